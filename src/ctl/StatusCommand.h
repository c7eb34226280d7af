#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// status [--json] [--follow]: prints how many transactions of the panel's list are overdue and due, and how
// far this kernel confines the panel's process and those of the commands that read a container. With
// --follow the counts are printed again each time they change (StatusFollower.h). Returns the exit status.
[[nodiscard]] int status(const Options& options, Streams& streams);

} // namespace ctl

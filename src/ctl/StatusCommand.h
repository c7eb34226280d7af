#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// status [--json]: prints how far this kernel confines the panel's process and those of the commands that
// read a container. Returns the exit status.
[[nodiscard]] int status(const Options& options, Streams& streams);

} // namespace ctl

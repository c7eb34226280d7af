#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// consume [--json]: takes the account's action log as the host application does. The log is renamed, its
// records are printed, and then the renamed file is removed. A renamed file that an interrupted run has left
// is printed first, so that a record may be printed twice but is never lost. Returns the exit status.
[[nodiscard]] int consume(const Options& options, Streams& streams);

} // namespace ctl

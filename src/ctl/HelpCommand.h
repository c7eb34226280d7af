#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// help [COMMAND] [--json], and any command line with --help: prints how the command is used that the line
// names, without one how each is; as JSON always all commands and options (docs/scripts.md). Returns the exit
// status.
[[nodiscard]] int help(const Options& options, Streams& streams);

} // namespace ctl

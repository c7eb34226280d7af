#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// settings get KEY [--json], settings set KEY VALUE: prints or changes a shared setting. Returns the exit
// status.
[[nodiscard]] int settings(const Options& options, Streams& streams);

} // namespace ctl

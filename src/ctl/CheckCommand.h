#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// check: whether the container is sound. Every fault is printed with its file, record and key, what the panel
// does about it and what mends it (docs/check.md). Fails if one would end the panel or lose an action. No
// file is changed and no process started.
[[nodiscard]] int check(const Options& options, Streams& streams);

} // namespace ctl

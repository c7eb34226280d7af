#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// list [--json]: prints every transaction that the widget reads, however many it shows, and the number that
// it shows. Returns the exit status.
[[nodiscard]] int list(const Options& options, Streams& streams);

} // namespace ctl

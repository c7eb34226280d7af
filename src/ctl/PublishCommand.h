#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// publish FILE.json: writes an array of objects, which have the feed's keys, as the feed. "-" is standard
// input. A missing container is made. Input at which the widget would end is refused, and so is what another
// reader of XML would not read as it is (Portability.h). Returns the exit status.
[[nodiscard]] int publish(const Options& options, Streams& streams);

} // namespace ctl

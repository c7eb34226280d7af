#pragma once

#include <QString>

namespace platform {

// A date (seconds since 1970-01-01 00:00 UTC) in the medium style of the current region, such as
// "Mar 10, 2026", without a time of day and without words such as "today". Empty for a date that is not
// finite or out of the calendar's range.
[[nodiscard]] QString mediumDateText(double date);

} // namespace platform

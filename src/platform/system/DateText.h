#pragma once

#include <QString>

namespace platform {

// The date of a moment (seconds since 1970-01-01 00:00 UTC) in the region's medium style, without a time and
// without relative words, as "Mar 10, 2026". Empty for a moment that is not finite or that no calendar can
// place.
[[nodiscard]] QString mediumDateText(double date);

} // namespace platform

#pragma once

#include <cmath>
#include <optional>

namespace platform {

// The millisecond that a moment (seconds since 1970-01-01 00:00 UTC) lies in, as ICU counts: always the one
// before, so that a fraction never reaches the next day. None for a moment that is not finite or lies beyond
// 100,000,000 days on either side of 1970 (the range of ECMAScript's dates, where every millisecond is exact
// and every calendar of ICU still answers at once).
[[nodiscard]] inline std::optional<double> millisecondsOf(double date) {
    constexpr double limit = 8.64e15;
    const double milliseconds = std::floor(date * 1000.0);
    if (!(milliseconds >= -limit && milliseconds <= limit))
        return std::nullopt;
    return milliseconds;
}

} // namespace platform

#pragma once

#include <cmath>
#include <optional>

namespace platform {

// A date (seconds since 1970-01-01 00:00 UTC) as ICU's time in milliseconds. It is rounded down, so that a
// fraction never reaches the next day. Absent for a date that is not finite or that is more than 100,000,000
// days before or after 1970. That is the range of ECMAScript's dates: a double represents every millisecond
// in it exactly, and all of ICU's calendars compute it quickly.
[[nodiscard]] inline std::optional<double> icuTime(double date) {
    constexpr double limit = 8.64e15;
    const double milliseconds = std::floor(date * 1000.0);
    if (!(milliseconds >= -limit && milliseconds <= limit))
        return std::nullopt;
    return milliseconds;
}

} // namespace platform

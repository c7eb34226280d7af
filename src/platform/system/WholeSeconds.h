#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace platform {

// A date (seconds since 1970-01-01 00:00 UTC) in whole seconds. It is rounded down, so that a fraction never
// reaches the next day. Absent for a date that is not finite or that is more than 100,000,000 days before or
// after 1970. That is the range of ECMAScript's dates, and all of ICU's calendars compute it quickly.
[[nodiscard]] inline std::optional<std::int64_t> wholeSeconds(double date) {
    constexpr double limit = 8.64e12;
    const double seconds = std::floor(date);
    if (!(seconds >= -limit && seconds <= limit))
        return std::nullopt;
    return static_cast<std::int64_t>(seconds);
}

} // namespace platform

#pragma once

#include <cstdint>
#include <optional>

namespace platform {

// Calendar arithmetic in the region's own calendar and time zone (ICU). Moments are seconds since 1970-01-01
// 00:00 UTC. A moment that no calendar can place (not finite, or out of its range) yields none.
class Calendar final {
public:
    // The moment with its day of the month moved by a number of days within the month: the day wraps around
    // the month's end and carries into neither month nor year (ICU's roll). The time of day stays. 31 January
    // and 1 is 1 January; 1 January and -1 is 31 January.
    [[nodiscard]] static std::optional<double> dateByAddingDaysWrapping(double date, std::int64_t days);

    // The first moment of the day that a moment lies in, made from era, year, month and day alone. Where
    // midnight is missing, 01:00 of that day (or what the zone's gap makes of it); where it comes twice, the
    // first of them.
    [[nodiscard]] static std::optional<double> startOfDay(double date);
};

} // namespace platform

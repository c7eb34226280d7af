#pragma once

#include <cstdint>
#include <optional>

namespace platform {

// Calendar arithmetic in the calendar (ICU) and the time zone (the system's) of the current region. Dates are
// seconds since 1970-01-01 00:00 UTC. The result is absent for a date that is not finite or out of the
// calendar's range.
class Calendar final {
public:
    // Adds days to the day of the month only: it wraps around at the end of the month and changes neither
    // month nor year (ICU's roll). The time of day is kept; one that the clocks skip on that day is moved
    // forward by the length of the gap, and of one that comes twice it is the first. 31 January plus 1 is
    // 1 January; 1 January minus 1 is 31 January.
    [[nodiscard]] static std::optional<double> dateByAddingDaysWrapping(double date, std::int64_t days);

    // The start of the day of a date. If a change of the clocks skips midnight, the day starts at the end of
    // the gap (usually 01:00); if it repeats midnight, the day starts at the first one.
    [[nodiscard]] static std::optional<double> startOfDay(double date);
};

} // namespace platform

#pragma once

#include <cstdint>
#include <optional>

namespace exchange {

// The start of the day that lies a number of days after today, in seconds since 1970-01-01 00:00 UTC and in
// the region's calendar and time zone. The day is added within the current month and never carries into the
// next, on purpose: one day after 31 January is 1 January. Nothing if the calendar yields no date.
[[nodiscard]] std::optional<double> startOfDayFromToday(std::int64_t days);

} // namespace exchange

#pragma once

#include <optional>
#include <string>
#include <string_view>

// Moments as text in the region's time zone. A moment is a number of seconds since 1970-01-01 00:00 UTC.
namespace ctl {

// The moment that a text names: a number of seconds ("1773165600.5", "nan", "inf"), or a day with or without
// a time ("2026-03-10", "2026-03-10 18:00", "today", "today+3 18:00:30", "today-2"). Days are calendar days:
// three days after 31 January is 3 February. A time that the clocks skip is moved forward by the length of
// the skip; of a time that comes twice, the first is taken. Any other text names no moment.
[[nodiscard]] std::optional<double> momentOfText(std::string_view text);

// Whether a moment is in the years 1 to 9999 (UTC). A NaN is not.
[[nodiscard]] bool isInCalendar(double moment);

// "2026-03-10 18:00", rounded down to the minute. A moment outside the calendar is written as the number.
[[nodiscard]] std::string textOfMoment(double moment);

// The same with seconds where they are not zero, or the number, so that momentOfText() gives the moment back.
[[nodiscard]] std::string exactTextOfMoment(double moment);

} // namespace ctl

#pragma once

#include <optional>
#include <string>
#include <string_view>

// Moments as people write them, in the region's time zone: seconds since 1970-01-01 00:00 UTC to and from
// text.
namespace ctl {

// A number of seconds ("1773165600.5", "nan", "inf"), or a day with or without a time: "2026-03-10",
// "2026-03-10 18:00", "today", "today+3 18:00:30", "today-2". Days are added plainly: three days after
// 31 January is 3 February. A time that the clocks leave out is moved on by what they leave out; of one that
// comes twice the first is meant. None for any other text.
[[nodiscard]] std::optional<double> momentOfText(std::string_view text);

// "2026-03-10 18:00", rounded down to the minute; the number itself where it is no moment of the calendar.
[[nodiscard]] std::string textOfMoment(double moment);

} // namespace ctl

#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace bridge {

// A day of the Gregorian calendar, without a time and without a time zone; the years 1 to 9999.
using Day = std::chrono::sys_days;

// The day of a text like "2026-11-21" (ISO 8601). Absent if the text is no such date.
[[nodiscard]] std::optional<Day> dayOfText(std::string_view text);
[[nodiscard]] std::string textOfDay(Day day);

} // namespace bridge

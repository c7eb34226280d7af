#pragma once

#include "bridge/plans/Day.h"

#include <cstdint>
#include <optional>

namespace bridge {

// The arithmetic of due days that the finance programs have in common. A result outside the years 1 to 9999
// is nothing, so that no count, however large, overflows.

inline constexpr Day firstDay{std::chrono::year(1) / 1 / 1};
inline constexpr Day lastDay{std::chrono::year(9999) / 12 / 31};

[[nodiscard]] std::optional<Day> plusDays(Day day, std::int64_t count);

// The same day of a later month, or that month's last one where it is shorter: 31 January, 28 February.
[[nodiscard]] std::optional<Day> plusMonths(Day day, std::int64_t count);

[[nodiscard]] unsigned dayOfMonth(Day day);
[[nodiscard]] Day lastDayOfMonth(Day day);

// That day of the same month, or the month's last one where it is shorter. Brings a plan for the 31st back to
// it after a short month.
[[nodiscard]] Day withDayOfMonth(Day day, unsigned dayOfMonth);

enum class WeekendMove { None, Before, After };

[[nodiscard]] bool isWeekend(Day day);
// A Saturday or Sunday moved to the Friday before or the Monday after it; every other day as it is.
[[nodiscard]] Day movedOffWeekend(Day day, WeekendMove move);

} // namespace bridge

#include "bridge/plans/Recurrence.h"

#include <algorithm>

namespace bridge {

using namespace std::chrono;

namespace {

// More days than the years 1 to 9999 have.
constexpr std::int64_t mostDays = 4'000'000;

} // namespace

std::optional<Day> plusDays(Day day, std::int64_t count) {
    if (count < -mostDays || count > mostDays)
        return std::nullopt;
    const Day result = day + days(count);
    return result >= firstDay && result <= lastDay ? std::optional(result) : std::nullopt;
}

std::optional<Day> plusMonths(Day day, std::int64_t count) {
    if (count < -mostDays || count > mostDays)
        return std::nullopt;
    const year_month_day date(day);
    const std::int64_t index = 12 * std::int64_t{int(date.year())} + unsigned(date.month()) - 1 + count;
    if (index < 12 || index >= 12 * 10'000)
        return std::nullopt;
    const year_month month(year(static_cast<int>(index / 12)),
                           std::chrono::month(static_cast<unsigned>(index % 12 + 1)));
    return withDayOfMonth(Day(month / 1), unsigned(date.day()));
}

unsigned dayOfMonth(Day day) {
    return unsigned(year_month_day(day).day());
}

Day lastDayOfMonth(Day day) {
    const year_month_day date(day);
    return date.year() / date.month() / last;
}

Day withDayOfMonth(Day day, unsigned dayOfMonth) {
    const Day end = lastDayOfMonth(day);
    const unsigned target = std::clamp(dayOfMonth, 1U, bridge::dayOfMonth(end));
    return day + days(target) - days(bridge::dayOfMonth(day));
}

bool isWeekend(Day day) {
    return weekday(day).iso_encoding() > 5;
}

Day movedOffWeekend(Day day, WeekendMove move) {
    const unsigned isoWeekday = weekday(day).iso_encoding();
    if (isoWeekday <= 5 || move == WeekendMove::None)
        return day;
    return move == WeekendMove::Before ? day - days(isoWeekday - 5) : day + days(8 - isoWeekday);
}

} // namespace bridge

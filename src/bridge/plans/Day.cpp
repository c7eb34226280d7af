#include "bridge/plans/Day.h"

#include <charconv>
#include <cstdio>

namespace bridge {

namespace {

// The number that a text of digits names, or nothing.
std::optional<unsigned> numberOfDigits(std::string_view digits) {
    unsigned number = 0;
    const char* end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && last == end ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<Day> dayOfText(std::string_view text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    const auto year = numberOfDigits(text.substr(0, 4));
    const auto month = numberOfDigits(text.substr(5, 2));
    const auto day = numberOfDigits(text.substr(8, 2));
    if (!year || !month || !day || *year == 0)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(*year)),
                                           std::chrono::month(*month), std::chrono::day(*day)};
    return date.ok() ? std::optional<Day>(date) : std::nullopt;
}

std::string textOfDay(Day day) {
    const std::chrono::year_month_day date(day);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}

} // namespace bridge

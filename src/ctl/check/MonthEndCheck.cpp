#include "ctl/check/MonthEndCheck.h"

#include "ctl/Moments.h"
#include "exchange/Days.h"

#include <limits>
#include <optional>
#include <string>

namespace ctl {

namespace {

enum class Direction : std::int64_t { Ahead = 1, Back = -1 };

// How many days this month still has after today, or had before.
std::int64_t daysLeft(Direction direction) {
    constexpr std::int64_t moreThanAnyMonth = 400;
    const auto step = static_cast<std::int64_t>(direction);
    std::optional<double> here = exchange::startOfDayFromToday(0);
    for (std::int64_t days = 0; days < moreThanAnyMonth; ++days) {
        const std::optional<double> next = exchange::startOfDayFromToday((days + 1) * step);
        if (!here || !next || (direction == Direction::Ahead ? *next <= *here : *next >= *here))
            return days;
        here = next;
    }
    return moreThanAnyMonth;
}

std::string largestCount(std::int64_t ahead) {
    if (ahead == 0)
        return "no count from 0 up is not cut today";
    return std::to_string(ahead - 1) + " is the largest count that is not cut today";
}

} // namespace

void checkDays(const CheckedContainer& container, Findings& findings) {
    const Place place{container.settings, std::nullopt, "notification_days_count"};
    const std::string count = std::to_string(container.dayCount);
    if (container.dayCount == std::numeric_limits<std::int64_t>::max()) {
        findings.add(Fault::DayCountOverflow, place, "the count " + count + " is too large to be added to");
        return;
    }
    if (!container.limit) {
        findings.add(Fault::CalendarNoDate, {}, "the calendar yields no date for today and the days ahead");
        return;
    }
    const std::int64_t ahead = daysLeft(Direction::Ahead);
    const std::int64_t added = container.dayCount + 1;
    const std::string until = "the list reaches to " + textOfMoment(*container.limit);
    if (added > ahead)
        findings.add(Fault::DayCountCut, place,
                     "the count " + count + " is cut short by the end of the month: " + until + "; " +
                         largestCount(ahead));
    else if (added < -daysLeft(Direction::Back))
        findings.add(Fault::DayCountCut, place,
                     "the count " + count + " leads back before the month: " + until);
}

} // namespace ctl

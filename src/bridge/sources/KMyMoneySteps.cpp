#include "bridge/sources/KMyMoneySteps.h"

#include <algorithm>

namespace bridge {

namespace {

// Eleven years of days, so that a date of long ago does not keep the reader busy.
constexpr int mostSteps = 4000;

// More than a year of days. An older schedule is one that nobody looks after, and every occurrence is a
// record.
constexpr int mostOverdue = 400;

// The 1st and the 16th, or the 15th and the month's last day. On the 29th and later, and in February, days
// move for good, on purpose: so they do in the program.
Day halfMonthLater(Day day) {
    using std::chrono::days;
    const unsigned number = dayOfMonth(day);
    const Day end = lastDayOfMonth(day);
    if (number == 15 || (number == 14 && day + days(15) > end))
        return end;
    if (number <= 14)
        return day + days(15);
    const unsigned next = day == end ? 15 : number - 15;
    return withDayOfMonth(end + days(1), next);
}

std::optional<Day> halfMonthsLater(Day day, std::int64_t count) {
    // Forty years are beyond every period; to walk through more of them would take long.
    if (count > 1000)
        return std::nullopt;
    for (std::int64_t step = 0; step < count; ++step)
        day = halfMonthLater(day);
    return plusDays(day, 0);
}

// The start's day of the month, where the month has it.
std::optional<Day> cameBack(std::optional<Day> day, std::optional<Day> start) {
    if (!day || !start || dayOfMonth(*start) > dayOfMonth(lastDayOfMonth(*day)))
        return day;
    return withDayOfMonth(*day, dayOfMonth(*start));
}

std::optional<Day> stepped(const KMyMoneySchedule& schedule, Day day) {
    // No larger count stays within the calendar; a larger one might overflow.
    const std::int64_t every = std::clamp<std::int64_t>(schedule.every, 1, 4'000'000);
    switch (schedule.unit) {
    case KMyMoneyUnit::Once:
        return std::nullopt;
    case KMyMoneyUnit::Day:
        return plusDays(day, every);
    case KMyMoneyUnit::Week:
        return plusDays(day, 7 * every);
    case KMyMoneyUnit::HalfMonth:
        return halfMonthsLater(day, every);
    case KMyMoneyUnit::Month:
        return cameBack(plusMonths(day, every), schedule.start);
    case KMyMoneyUnit::Year:
        return cameBack(plusMonths(day, 12 * every), schedule.start);
    }
    return std::nullopt;
}

Day nominalOf(const KMyMoneySchedule& schedule, Day day) {
    return schedule.isLastDayOfMonth ? lastDayOfMonth(day) : day;
}

// The day by which the program counts an occurrence behind the next one as overdue. A plan for the last days
// of months comes back to that of its start's month, on purpose: so it counts, though each one is due on its
// own month's last day as soon as it is the next one.
Day countedDay(const KMyMoneySchedule& schedule, Day nominal) {
    const bool isByMonths = schedule.unit == KMyMoneyUnit::Month || schedule.unit == KMyMoneyUnit::Year;
    return schedule.isLastDayOfMonth && schedule.start && isByMonths
               ? withDayOfMonth(nominal, dayOfMonth(lastDayOfMonth(*schedule.start)))
               : nominal;
}

bool isPaidAhead(const KMyMoneySchedule& schedule, Day nominal) {
    return std::ranges::find(schedule.paidAhead, nominal) != schedule.paidAhead.end();
}

// KMyMoney goes on from the day to which a weekend has moved the last one of a month, on purpose here too:
// one that is moved into the next month takes the place of that month's own. When it counts what is overdue,
// the first one only does so.
enum class GoesOn { FromMovedFirst, FromMoved };

template <class Visit>
void forEach(const KMyMoneySchedule& schedule, const Period& period, GoesOn goesOn, Visit visit) {
    std::optional<Day> nominal = nominalOf(schedule, *schedule.next);
    for (int step = 0; nominal && step < mostSteps; ++step) {
        if (movedOffWeekend(countedDay(schedule, *nominal), schedule.weekendMove) > period.last)
            break;
        visit(*nominal, step == 0);
        const bool isFromMoved = schedule.isLastDayOfMonth && (step == 0 || goesOn == GoesOn::FromMoved);
        nominal =
            following(schedule, isFromMoved ? movedOffWeekend(*nominal, schedule.weekendMove) : *nominal);
    }
}

} // namespace

bool isFinished(const KMyMoneySchedule& schedule) {
    if (!schedule.next)
        return true;
    if (!schedule.lastPayment)
        return false;
    const bool isPast = schedule.end && (*schedule.lastPayment >= *schedule.end ||
                                         nominalOf(schedule, *schedule.next) > *schedule.end);
    return isPast || schedule.unit == KMyMoneyUnit::Once;
}

std::optional<Day> following(const KMyMoneySchedule& schedule, Day nominal) {
    const std::optional<Day> day = stepped(schedule, nominal);
    if (!day)
        return std::nullopt;
    const Day next = nominalOf(schedule, *day);
    // The end is moved over a weekend as the days are.
    const bool isPast = schedule.end && movedOffWeekend(next, schedule.weekendMove) >
                                            movedOffWeekend(*schedule.end, schedule.weekendMove);
    return isPast || next <= nominal ? std::nullopt : std::optional(next);
}

std::vector<Occurrence> occurrencesOf(const KMyMoneySchedule& schedule, const Period& period) {
    std::vector<Occurrence> occurrences;
    if (isFinished(schedule))
        return occurrences;
    int overdue = 0;
    forEach(schedule, period, GoesOn::FromMovedFirst, [&](Day nominal, bool isFirst) {
        const Day day =
            movedOffWeekend(isFirst ? nominal : countedDay(schedule, nominal), schedule.weekendMove);
        if (day < period.today && overdue++ < mostOverdue)
            occurrences.push_back({day, nominal});
    });
    const auto isListed = [&](Day nominal) {
        return std::ranges::find(occurrences, nominal, &Occurrence::nominal) != occurrences.end();
    };
    forEach(schedule, period, GoesOn::FromMoved, [&](Day nominal, bool isFirst) {
        const Day day = movedOffWeekend(nominal, schedule.weekendMove);
        const bool isToCome = day >= period.today && day <= period.last;
        if (isToCome && !isListed(nominal) && (isFirst || !isPaidAhead(schedule, nominal)))
            occurrences.push_back({day, nominal});
    });
    return occurrences;
}

} // namespace bridge

#include "bridge/sources/HomeBankSteps.h"

#include "bridge/plans/Recurrence.h"

#include <algorithm>

namespace bridge {

namespace {

// HomeBank shows "+10" from ten on, and does not tell how many more.
constexpr int mostLate = 11;

// Eleven years of days, so that a date of long ago does not keep the reader busy.
constexpr int mostSteps = 4000;

std::optional<Day> stepped(const HomeBankSchedule& schedule) {
    // No larger count stays within the calendar; a larger one might overflow.
    const std::int64_t every = std::min<std::int64_t>(schedule.every, 4'000'000);
    switch (schedule.unit) {
    case HomeBankUnit::Day:
        return plusDays(schedule.next, every);
    case HomeBankUnit::Week:
        return plusDays(schedule.next, 7 * every);
    case HomeBankUnit::Month:
        return plusMonths(schedule.next, every);
    case HomeBankUnit::Year:
        return plusMonths(schedule.next, 12 * every);
    }
    return std::nullopt;
}

} // namespace

std::optional<HomeBankSchedule> advanced(const HomeBankSchedule& schedule) {
    if (schedule.every < 1 || (schedule.left && *schedule.left <= 1))
        return std::nullopt;
    const std::optional<Day> day = stepped(schedule);
    if (!day)
        return std::nullopt;
    const Day kept = schedule.skipsWeekends ? movedOffWeekend(*day, WeekendMove::After) : *day;
    // The days that the last month's end took away are given back after the weekend rule, on purpose: so does
    // HomeBank, and the day may come to lie in another month or on another weekend.
    const std::optional<Day> next = plusDays(kept, schedule.gap);
    if (!next)
        return std::nullopt;
    HomeBankSchedule result = schedule;
    result.next = *next;
    result.gap = 0;
    if (schedule.unit == HomeBankUnit::Month || schedule.unit == HomeBankUnit::Year) {
        const std::int64_t meant = dayOfMonth(schedule.next) + schedule.gap;
        result.gap = std::clamp<std::int64_t>(meant - dayOfMonth(*next), 0, 3);
    }
    if (result.left)
        --*result.left;
    return result;
}

std::vector<Occurrence> occurrencesOf(HomeBankSchedule schedule, const Period& period) {
    std::vector<Occurrence> occurrences;
    int late = 0;
    // HomeBank gives days back when it books an occurrence, but not when it counts the late ones: of a plan
    // for the 31st of January the one of March is late from the 28th on, and once the earlier two are booked
    // it is due on the 31st.
    HomeBankSchedule counted = schedule;
    for (int step = 0; step < mostSteps && std::min(schedule.next, counted.next) <= period.last; ++step) {
        const bool isLate = counted.next <= period.today;
        const Day day = (schedule.next <= period.today) == isLate ? schedule.next : counted.next;
        if (day <= period.last && (!isLate || late++ < mostLate))
            occurrences.push_back({day, schedule.next});
        counted.gap = 0;
        const auto following = advanced(schedule);
        const auto countedNext = advanced(counted);
        if (!following || !countedNext)
            break;
        schedule = *following;
        counted = *countedNext;
    }
    return occurrences;
}

} // namespace bridge

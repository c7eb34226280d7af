#include "bridge/sources/GnuCashSchedule.h"

#include <algorithm>

namespace bridge {

namespace {

using namespace std::chrono;
using Period = GnuCashRecurrence::Period;

// More periods than there are days, so that no product overflows.
constexpr std::int64_t mostPeriods = 4'000'000;

bool isByDays(Period period) {
    return period == Period::Day || period == Period::Week;
}

std::int64_t unitsOf(const GnuCashRecurrence& recurrence) {
    const bool isSevenOrTwelve = recurrence.period == Period::Week || recurrence.period == Period::Year;
    const std::int64_t every = std::clamp<std::int64_t>(recurrence.every, 1, mostPeriods);
    return !isSevenOrTwelve ? every : every * (recurrence.period == Period::Week ? 7 : 12);
}

// The weekday of the start in the month of another day: the last one, or the one of the same number. After a
// start on a fifth one come fourth ones, on purpose: so they do in GnuCash, even in a month that has a fifth
// one.
Day weekdayInMonth(Day month, const GnuCashRecurrence& recurrence) {
    const year_month_day date(month);
    const weekday wanted(recurrence.start);
    const Day latest = Day(date.year() / date.month() / wanted[last]);
    if (recurrence.period == Period::LastWeekday)
        return latest;
    const unsigned number = std::min(4U, (dayOfMonth(recurrence.start) - 1) / 7 + 1);
    return Day(date.year() / date.month() / wanted[number]);
}

std::optional<Day> nominalDay(const GnuCashRecurrence& recurrence, std::int64_t index) {
    if (index > mostPeriods)
        return std::nullopt;
    const std::int64_t count = index * unitsOf(recurrence);
    if (isByDays(recurrence.period))
        return plusDays(recurrence.start, count);
    const auto day = plusMonths(recurrence.start, count);
    switch (recurrence.period) {
    case Period::Once:
        return index == 0 ? day : std::nullopt;
    case Period::EndOfMonth:
        return day ? std::optional(lastDayOfMonth(*day)) : day;
    case Period::NthWeekday:
    case Period::LastWeekday:
        return day ? std::optional(weekdayInMonth(*day, recurrence)) : day;
    default:
        return day;
    }
}

bool canMove(Period period) {
    return period == Period::Month || period == Period::EndOfMonth || period == Period::Year;
}

// The index of a day that is certainly not after the wanted one, and only a few before it.
std::int64_t indexBefore(const GnuCashRecurrence& recurrence, Day day) {
    const std::int64_t passed = (day - recurrence.start).count();
    const std::int64_t unit = unitsOf(recurrence) * (isByDays(recurrence.period) ? 1 : 31);
    return recurrence.period == Period::Once ? 0 : std::max<std::int64_t>(0, passed / unit - 2);
}

std::optional<Occurrence> nextAfter(const GnuCashRecurrence& recurrence, Day day) {
    const auto occurrenceOf = [&recurrence](Day nominal) {
        return Occurrence{canMove(recurrence.period) ? movedOffWeekend(nominal, recurrence.move) : nominal,
                          nominal};
    };
    // The start is the first one, on purpose even where it is no last day of a month: so it is in
    // GnuCash.
    const Occurrence first = occurrenceOf(recurrence.start);
    if (std::min(first.nominal, first.day) > day)
        return first;
    for (std::int64_t index = indexBefore(recurrence, day);; ++index) {
        const auto nominal = nominalDay(recurrence, index);
        if (!nominal)
            return std::nullopt;
        const Occurrence next = occurrenceOf(*nominal);
        if (next.nominal > std::max(day, recurrence.start) && next.day > day)
            return next;
    }
}

// The day after which the next occurrence is.
Day referenceOf(const GnuCashSchedule& schedule, const GnuCashState& state) {
    const Day before = schedule.start - days(1);
    return state.last ? std::max(*state.last, before) : before;
}

std::optional<std::int64_t> oneLess(const std::optional<std::int64_t>& remaining) {
    return remaining ? std::optional(*remaining - 1) : std::nullopt;
}

} // namespace

std::optional<Occurrence> nextAfter(const GnuCashSchedule& schedule, Day day) {
    std::optional<Occurrence> earliest;
    for (const GnuCashRecurrence& recurrence : schedule.recurrences) {
        const auto next = nextAfter(recurrence, day);
        if (next && (!earliest || next->day < earliest->day))
            earliest = next;
    }
    return earliest && schedule.end && earliest->day > *schedule.end ? std::nullopt : earliest;
}

GnuCashOccurrences occurrencesOf(const GnuCashSchedule& schedule, Day last, std::size_t most) {
    GnuCashOccurrences result;
    std::size_t found = 0;
    const auto add = [&](const Occurrence& occurrence) {
        ++found;
        if (occurrence.day > last)
            return;
        if (result.all.size() < most)
            result.all.push_back(occurrence);
        else
            result.isComplete = false;
    };
    GnuCashState state = schedule.state;
    std::optional<Day> latest;
    for (const GnuCashState& before : schedule.postponed) {
        const auto next = nextAfter(schedule, referenceOf(schedule, before));
        if (!next || next->day <= latest)
            continue;
        add(*next);
        latest = state.last = next->day;
        if (schedule.state.remaining && before.remaining.value_or(0) > 0)
            state.remaining = oneLess(before.remaining);
    }
    Day reference = referenceOf(schedule, state);
    // The second one tells whether the first is single, even if it is after the last day.
    for (bool goesOn = true; goesOn && result.isComplete;) {
        const auto next = state.remaining.value_or(1) > 0 ? nextAfter(schedule, reference) : std::nullopt;
        goesOn = next && (next->day <= last || found < 2);
        if (!next)
            break;
        add(*next);
        reference = next->day;
        state.remaining = oneLess(state.remaining);
    }
    result.isSingle = found == 1;
    return result;
}

} // namespace bridge

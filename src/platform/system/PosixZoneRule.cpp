#include "platform/system/PosixZoneRule.h"

#include "platform/system/PosixZoneRuleText.h"

#include <string>

namespace platform {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr std::int64_t secondsOfDay = 86400;

sys_days dayOf(const PosixZoneRule::Change& change, std::chrono::year year) {
    using Day = PosixZoneRule::Change::Day;
    if (change.kind == Day::OfWeek) {
        const auto month = year / change.month;
        const std::chrono::weekday weekday{static_cast<unsigned>(change.day)};
        return change.week == 5 ? sys_days{month / weekday[std::chrono::last]}
                                : sys_days{month / weekday[static_cast<unsigned>(change.week)]};
    }
    const sys_days first{year / 1 / 1};
    if (change.kind == Day::OfYear)
        return first + days(change.day);
    const bool isAfterLeapDay = year.is_leap() && change.day >= 60;
    return first + days(change.day - 1 + (isAfterLeapDay ? 1 : 0));
}

// The moment of a change of the clocks. Its time of day counts with the offset that ends there.
std::int64_t momentOf(const PosixZoneRule::Change& change, std::chrono::year year,
                      std::int32_t offsetBefore) {
    const std::int64_t day = dayOf(change, year).time_since_epoch().count();
    return day * secondsOfDay + change.time - offsetBefore;
}

} // namespace

std::optional<PosixZoneRule> PosixZoneRule::fromText(std::string_view text) {
    constexpr int largestHour = 24;
    PosixZoneRuleText parts(text);
    PosixZoneRule rule;
    parts.skipName();
    rule.standard_ = -parts.time(largestHour); // the text counts to the west
    if (!parts.isAtEnd()) {
        Summer summer;
        parts.skipName();
        const bool hasOffset = !parts.isAtEnd() && !parts.isAt(',');
        summer.offset = hasOffset ? -parts.time(largestHour) : rule.standard_ + 3600;
        if (parts.isComplete())
            return fromText(std::string(text) + ",M3.2.0,M11.1.0");
        parts.skip(',');
        summer.start = parts.change();
        parts.skip(',');
        summer.end = parts.change();
        rule.summer_ = summer;
    }
    return parts.isComplete() ? std::optional(rule) : std::nullopt;
}

// South of the equator, summer ends in the next year.
PosixZoneRule::Period PosixZoneRule::summerOf(std::chrono::year year) const {
    const std::int64_t start = momentOf(summer_->start, year, standard_);
    const std::int64_t end = momentOf(summer_->end, year, summer_->offset);
    if (end >= start)
        return {start, end};
    return {start, momentOf(summer_->end, year + std::chrono::years(1), summer_->offset)};
}

ZoneOffset PosixZoneRule::offsetAt(std::int64_t moment) const {
    if (!summer_)
        return {standard_};
    // The years of std::chrono end at 32767. The calendar and its weekdays repeat every 400 years.
    constexpr std::int64_t cycle = 146097 * secondsOfDay;
    const std::int64_t inCycle = (moment % cycle + cycle) % cycle;
    const std::int64_t cycleStart = moment - inCycle;
    const std::chrono::year_month_day date{sys_days(days(inCycle / secondsOfDay))};
    // A change may be a week before its year or a week after it, so that the summers of two years on either
    // side count.
    for (int year = -2; year <= 2; ++year) {
        const Period summer = summerOf(date.year() + std::chrono::years(year));
        if (inCycle < summer.start)
            return {standard_, cycleStart + summer.start};
        if (inCycle < summer.end)
            return {summer_->offset, cycleStart + summer.end};
    }
    return {standard_};
}

} // namespace platform

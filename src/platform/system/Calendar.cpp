#include "platform/system/Calendar.h"

#include "platform/system/IcuTime.h"
#include "platform/system/Region.h"

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <cmath>
#include <iterator>
#include <memory>
#include <utility>

namespace platform {

namespace {

// The calendar of the region, set to a time; nullptr if ICU cannot make it.
std::unique_ptr<icu::Calendar> calendarAt(double milliseconds) {
    const Region region = Region::current();
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(region.timeZone)),
        icu::Locale(region.locale.c_str()), status));
    if (U_FAILURE(status))
        return nullptr;
    calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    calendar->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
    calendar->setTime(milliseconds, status);
    return U_SUCCESS(status) ? std::move(calendar) : nullptr;
}

// The number of days from the first of the month to the first of the next month. Counting them also gives the
// right length of a month with missing days (October 1582). 0 if the calendar fails.
std::int32_t lengthOfMonth(const icu::Calendar& calendar) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> walker(calendar.clone());
    walker->set(UCAL_DAY_OF_MONTH, 1);
    const std::int32_t first = walker->get(UCAL_JULIAN_DAY, status);
    walker->add(UCAL_MONTH, 1, status);
    const std::int32_t next = walker->get(UCAL_JULIAN_DAY, status);
    return U_SUCCESS(status) ? next - first : 0;
}

// Some calendars return wrong times for dates hundreds of thousands of years from now without reporting an
// error. One day more than asked for allows for any change of the zone's offset.
bool isNear(double moved, double milliseconds, std::int32_t days) {
    constexpr double millisecondsOfDay = 86'400'000;
    return std::abs(moved - milliseconds) <= (days + 1) * millisecondsOfDay;
}

} // namespace

std::optional<double> Calendar::dateByAddingDaysWrapping(double date, std::int64_t days) {
    const auto start = icuTime(date);
    const auto calendar = start ? calendarAt(*start) : nullptr;
    if (!calendar)
        return std::nullopt;
    const std::int32_t length = lengthOfMonth(*calendar);
    if (length <= 0)
        return std::nullopt;
    // ICU overflows on large amounts. Rolling by whole months has no effect.
    UErrorCode status = U_ZERO_ERROR;
    calendar->roll(UCAL_DAY_OF_MONTH, static_cast<std::int32_t>(days % length), status);
    const double end = calendar->getTime(status);
    if (U_FAILURE(status) || !isNear(end, *start, length))
        return std::nullopt;
    return date + (end - *start) / 1000.0; // keeps the fraction of a millisecond
}

std::optional<double> Calendar::startOfDay(double date) {
    const auto moment = icuTime(date);
    const auto calendar = moment ? calendarAt(*moment) : nullptr;
    if (!calendar)
        return std::nullopt;
    // In calendars with leap months, only the flag tells a leap month from the month before it.
    constexpr UCalendarDateFields fields[] = {UCAL_ERA, UCAL_YEAR, UCAL_MONTH, UCAL_IS_LEAP_MONTH,
                                              UCAL_DAY_OF_MONTH};
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t values[std::size(fields)];
    for (std::size_t i = 0; i < std::size(fields); ++i)
        values[i] = calendar->get(fields[i], status);
    calendar->clear();
    for (std::size_t i = 0; i < std::size(fields); ++i)
        calendar->set(fields[i], values[i]);
    const double start = calendar->getTime(status);
    if (U_FAILURE(status) || !isNear(start, *moment, 1))
        return std::nullopt;
    return start / 1000.0;
}

} // namespace platform

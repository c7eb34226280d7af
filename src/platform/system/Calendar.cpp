#include "platform/system/Calendar.h"

#include "platform/system/CurrentTimeZone.h"
#include "platform/system/Region.h"
#include "platform/system/WholeSeconds.h"

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <cmath>
#include <iterator>
#include <memory>
#include <utility>

namespace platform {

namespace {

constexpr double millisecondsOfSecond = 1000;

// The calendar of the region's locale, set to a wall time; nullptr if ICU cannot make it. ICU's own data of
// time zones may be older than the system's, so that its calendar runs in GMT on wall time.
std::unique_ptr<icu::Calendar> calendarAt(std::int64_t wallTime) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale(Region::current().locale.c_str());
    std::unique_ptr<icu::Calendar> calendar(
        icu::Calendar::createInstance(*icu::TimeZone::getGMT(), locale, status));
    if (U_FAILURE(status))
        return nullptr;
    calendar->setTime(static_cast<double>(wallTime) * millisecondsOfSecond, status);
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

// The wall time of a calendar that was moved. Absent if the calendar failed or moved by more than a number of
// days: some calendars return wrong times for dates hundreds of thousands of years from now without an error.
std::optional<std::int64_t> wallTimeOf(const icu::Calendar& calendar, std::int64_t before,
                                       std::int32_t days) {
    constexpr double secondsOfDay = 86'400;
    UErrorCode status = U_ZERO_ERROR;
    const double seconds = calendar.getTime(status) / millisecondsOfSecond;
    if (U_FAILURE(status) || !(std::abs(seconds - static_cast<double>(before)) <= days * secondsOfDay))
        return std::nullopt;
    return static_cast<std::int64_t>(seconds);
}

} // namespace

std::optional<double> Calendar::dateByAddingDaysWrapping(double date, std::int64_t days) {
    const auto start = wholeSeconds(date);
    if (!start)
        return std::nullopt;
    const TimeZone& zone = currentTimeZone();
    const std::int64_t wallStart = zone.wallTimeAt(*start);
    const auto calendar = calendarAt(wallStart);
    const std::int32_t length = calendar ? lengthOfMonth(*calendar) : 0;
    if (length <= 0)
        return std::nullopt;
    // ICU overflows on large amounts. Rolling by whole months has no effect.
    UErrorCode status = U_ZERO_ERROR;
    calendar->roll(UCAL_DAY_OF_MONTH, static_cast<std::int32_t>(days % length), status);
    const auto wallEnd = U_SUCCESS(status) ? wallTimeOf(*calendar, wallStart, length) : std::nullopt;
    if (!wallEnd)
        return std::nullopt;
    if (*wallEnd == wallStart)
        return date; // also the second of two moments with the same wall time
    return date + static_cast<double>(zone.momentOf(*wallEnd) - *start); // keeps the fraction
}

std::optional<double> Calendar::startOfDay(double date) {
    const auto moment = wholeSeconds(date);
    if (!moment)
        return std::nullopt;
    const TimeZone& zone = currentTimeZone();
    const std::int64_t wallTime = zone.wallTimeAt(*moment);
    const auto calendar = calendarAt(wallTime);
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
    const auto midnight = U_SUCCESS(status) ? wallTimeOf(*calendar, wallTime, 1) : std::nullopt;
    if (!midnight)
        return std::nullopt;
    return static_cast<double>(zone.firstMomentFrom(*midnight));
}

} // namespace platform

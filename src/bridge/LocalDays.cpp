#include "bridge/LocalDays.h"

#include "platform/system/Clock.h"
#include "platform/system/CurrentTimeZone.h"
#include "platform/system/WholeSeconds.h"

#include <cstdint>
#include <cstdio>

namespace bridge {

namespace {

std::chrono::sys_seconds wallTimeOf(double seconds) {
    const std::int64_t moment = platform::wholeSeconds(seconds).value_or(0);
    return std::chrono::sys_seconds(std::chrono::seconds(platform::currentTimeZone().wallTimeAt(moment)));
}

} // namespace

Day today() {
    return dayOfMoment(platform::Clock::current().now());
}

Day dayOfMoment(double seconds) {
    return std::chrono::floor<std::chrono::days>(wallTimeOf(seconds));
}

double endOfDay(Day day) {
    const std::chrono::sys_seconds midnight = day + std::chrono::days(1);
    const std::int64_t next =
        platform::currentTimeZone().firstMomentFrom(midnight.time_since_epoch().count());
    return static_cast<double>(next - 1);
}

std::string textOfMoment(double seconds) {
    const std::chrono::sys_seconds wallTime = wallTimeOf(seconds);
    const Day day = std::chrono::floor<std::chrono::days>(wallTime);
    const std::chrono::hh_mm_ss time(wallTime - day);
    char text[32];
    std::snprintf(text, sizeof text, " %02d:%02d", static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()));
    return textOfDay(day) + text;
}

} // namespace bridge

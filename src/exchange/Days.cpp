#include "exchange/Days.h"

#include "platform/system/Calendar.h"
#include "platform/system/Clock.h"

namespace exchange {

std::optional<double> startOfDayFromToday(std::int64_t days) {
    const double now = platform::Clock::current().now();
    const std::optional<double> moment = platform::Calendar::dateByAddingDaysWrapping(now, days);
    return moment ? platform::Calendar::startOfDay(*moment) : std::nullopt;
}

} // namespace exchange

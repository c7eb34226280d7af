#include "platform/system/TimeZone.h"

#include <algorithm>

namespace platform {

namespace {

constexpr std::int64_t day = 86400;

// The number of days since 1970-01-01, rounded down.
std::int64_t dateOf(std::int64_t wallTime) {
    return wallTime / day - (wallTime % day < 0 ? 1 : 0);
}

} // namespace

ZoneOffset TimeZone::offsetAt(std::int64_t moment) const {
    return std::visit([moment](const auto& source) { return source.offsetAt(moment); }, source_);
}

std::int64_t TimeZone::wallTimeAt(std::int64_t moment) const {
    return moment + offsetAt(moment).seconds;
}

std::int64_t TimeZone::firstMomentFrom(std::int64_t wallTime) const {
    constexpr std::int64_t largestOffset = 26 * 3600;
    for (std::int64_t moment = wallTime - largestOffset;;) {
        const ZoneOffset offset = offsetAt(moment);
        const std::int64_t found = wallTime - offset.seconds;
        if (found < offset.end)
            return std::max(found, moment); // it is earlier where the time lies in the gap before this offset
        moment = offset.end;
    }
}

std::int64_t TimeZone::momentOf(std::int64_t wallTime) const {
    const std::int64_t moment = firstMomentFrom(wallTime);
    return wallTimeAt(moment) == wallTime ? moment : wallTime - offsetAt(moment - 1).seconds;
}

std::int64_t TimeZone::nextDateAfter(std::int64_t moment) const {
    const std::int64_t date = dateOf(wallTimeAt(moment));
    for (;;) {
        const ZoneOffset offset = offsetAt(moment);
        if (dateOf(moment + offset.seconds) != date)
            return moment;
        const std::int64_t midnight = (date + 1) * day - offset.seconds;
        if (midnight < offset.end)
            return midnight;
        moment = offset.end;
    }
}

} // namespace platform

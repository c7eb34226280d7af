#pragma once

#include "platform/system/PosixZoneRule.h"
#include "platform/system/ZoneFile.h"
#include "platform/system/ZoneOffset.h"

#include <cstdint>
#include <utility>
#include <variant>

namespace platform {

// A time zone: from moments to wall time and back. A moment is a number of seconds since 1970-01-01 00:00 UTC
// in the range of wholeSeconds(); a wall time is what a clock in the zone shows, as seconds since 1970-01-01
// 00:00 by that clock.
class TimeZone final {
public:
    // UTC.
    TimeZone() = default;
    explicit TimeZone(PosixZoneRule rule)
        : source_(rule) {}
    explicit TimeZone(ZoneFile file)
        : source_(std::move(file)) {}

    [[nodiscard]] ZoneOffset offsetAt(std::int64_t moment) const;
    [[nodiscard]] std::int64_t wallTimeAt(std::int64_t moment) const;

    // The first moment at which the clock shows a wall time or a later one: the first of the two moments if
    // it shows the time twice, the end of the gap if it skips the time.
    [[nodiscard]] std::int64_t firstMomentFrom(std::int64_t wallTime) const;

    // The same, but a time that the clock skips is moved forward by the length of the gap: 02:30 becomes
    // 03:30.
    [[nodiscard]] std::int64_t momentOf(std::int64_t wallTime) const;

    // The first moment after this one at which the clock shows another date. It is midnight, unless a change
    // of the clocks skips midnight or goes back over it.
    [[nodiscard]] std::int64_t nextDateAfter(std::int64_t moment) const;

private:
    std::variant<PosixZoneRule, ZoneFile> source_;
};

} // namespace platform

#pragma once

#include "platform/system/ZoneOffset.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace platform {

// A time zone as a text: the form of the environment variable TZ in POSIX (Base Definitions, 8.3), with the
// extensions of RFC 8536 (3.3.1). "CET-1CEST,M3.5.0,M10.5.0/3" has an offset of one hour, and of two from the
// last Sunday of March, 02:00, to the last Sunday of October, 03:00. "<+03>-3" has the same offset all year.
class PosixZoneRule final {
public:
    // When the clocks change in each year.
    struct Change {
        enum class Day {
            OfYear,             // n: 0 to 365, 29 February is counted
            OfYearWithoutLeaps, // Jn: 1 to 365, 29 February is never counted, so that 60 is 1 March
            OfWeek              // Mm.w.d: weekday 0 (Sunday) to 6 of week 1 to 5 of a month; 5 is the last
        };
        Day kind = Day::OfYear;
        int day = 0;
        int week = 0;
        int month = 0;
        int time = 2 * 3600; // seconds after midnight, by the clock before the change; -167 to 167 hours
    };

    // UTC.
    PosixZoneRule() = default;

    // Absent if the text is no such rule as a whole. Summer time without dates has those of the United States
    // since 2007, as in the C library.
    [[nodiscard]] static std::optional<PosixZoneRule> fromText(std::string_view text);

    // The offset in force at a moment: seconds since 1970-01-01 00:00 UTC, in the range of wholeSeconds().
    [[nodiscard]] ZoneOffset offsetAt(std::int64_t moment) const;

private:
    // A yearly period with an offset of its own. It may also be earlier than the standard offset (Dublin).
    struct Summer {
        std::int32_t offset = 0;
        Change start;
        Change end;
    };
    struct Period {
        std::int64_t start;
        std::int64_t end;
    };
    [[nodiscard]] Period summerOf(std::chrono::year year) const;

    std::int32_t standard_ = 0;
    std::optional<Summer> summer_;
};

} // namespace platform

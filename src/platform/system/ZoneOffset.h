#pragma once

#include <cstdint>
#include <limits>

namespace platform {

// The offset of a time zone that is in force at a moment, and when it ends.
struct ZoneOffset {
    static constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();

    std::int32_t seconds = 0; // local time minus UTC, so it is positive east of Greenwich
    std::int64_t end = never; // the first moment after it, in seconds since 1970-01-01 00:00 UTC

    bool operator==(const ZoneOffset&) const = default;
};

} // namespace platform

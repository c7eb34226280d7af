#pragma once

#include "platform/system/PosixZoneRule.h"
#include "platform/system/ZoneOffset.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

// A time zone as a file of the time zone database describes it (TZif, RFC 8536): the moments at which its
// offset changes, and a rule for the time after the last of them.
class ZoneFile final {
public:
    // Reads a file's bytes: the 64-bit data of version 2 and later, or the data of version 1. Absent if the
    // bytes end early, a count or an index is wrong, the moments do not ascend, an offset is out of the
    // RFC's range or the rule is none. Names, the leap seconds of the "right" zones and the indicators for
    // making POSIX rules are skipped.
    [[nodiscard]] static std::optional<ZoneFile> fromBytes(std::string_view bytes);

    // The offset in force at a moment: seconds since 1970-01-01 00:00 UTC, in the range of wholeSeconds().
    // Before the first change it is that of the file's first type of local time.
    [[nodiscard]] ZoneOffset offsetAt(std::int64_t moment) const;

private:
    struct Transition {
        std::int64_t moment;
        std::int32_t offset; // from then on
    };
    struct Counts;
    bool readData(std::string_view data, const Counts& counts, std::size_t timeSize);

    std::int32_t firstOffset_ = 0;
    std::vector<Transition> transitions_;
    std::optional<PosixZoneRule> rule_; // after the last transition
};

} // namespace platform

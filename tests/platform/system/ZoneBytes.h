#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform_test {

// The content of a zone file (TZif, RFC 8536). Its first data block, for readers of version 1, has one type
// of local time whose offset is nowhere else, so that a reader that took it would be seen.
struct ZoneBytes {
    struct Transition {
        std::int64_t moment;
        char type;
    };

    char version = '2';
    std::vector<Transition> transitions;
    std::vector<std::int32_t> offsets = {0}; // of each type of local time
    std::string rule;                        // after the last transition

    [[nodiscard]] std::string text() const;
    // The bytes of a file of version 1, which has a single block with moments of 32 bits and no rule.
    [[nodiscard]] std::string textOfVersion1() const;
};

// A number in a number of bytes, the highest first.
[[nodiscard]] std::string bigEndian(std::int64_t number, int size);

} // namespace platform_test

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// The characters of an XML text that stand for themselves.
namespace platform::plist {

struct PlainRun {
    const char* end = nullptr; // at the first '<' or '&', or at the text's end
    bool isAscii = true;       // all bytes before it
};

// Looks at eight bytes at a time in one word (docs/performance.md has what that wins).
inline PlainRun plainRun(const char* at, const char* end) {
    constexpr std::uint64_t everyByte = 0x0101010101010101U;
    constexpr std::uint64_t highBits = 0x80 * everyByte;
    // The high bit of each byte that is zero. A byte above one that is zero may be marked too.
    const auto zeroBytes = [](std::uint64_t word) { return (word - everyByte) & ~word & highBits; };
    std::uint64_t seen = 0;
    if constexpr (std::endian::native == std::endian::little) {
        for (; end - at >= 8; at += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, at, sizeof word);
            const std::uint64_t found =
                zeroBytes(word ^ ('<' * everyByte)) | zeroBytes(word ^ ('&' * everyByte));
            if (found != 0) {
                const int before =
                    std::countr_zero(found) - 7; // bits of the bytes before the first one found
                const std::uint64_t mask = (std::uint64_t{1} << static_cast<unsigned>(before)) - 1;
                return {at + before / 8, ((seen | (word & mask)) & highBits) == 0};
            }
            seen |= word;
        }
    }
    for (; at < end && *at != '<' && *at != '&'; ++at)
        seen |= static_cast<unsigned char>(*at);
    return {at, (seen & highBits) == 0};
}

} // namespace platform::plist

#pragma once

#include "platform/plist/text/Swar.h"

#include <cstddef>

// Which texts cannot be written as they stand: those with '<', '>', '&' or the first byte of a lone
// surrogate. A text stands where a block may be read beyond its end. Some texts that need no care may be
// found too.
namespace platform::plist {

// As many bytes at least must be readable after a text.
constexpr std::size_t careSlack = 16;

// Eight bytes at a time, on any machine.
inline bool portableMayNeedCare(const char* text, std::size_t size) {
    constexpr std::size_t width = sizeof(std::uint64_t);
    const auto may = [](std::uint64_t word) {
        // '<' (0x3C) and '>' (0x3E) differ in one bit.
        return (roughlyZeroBytes((word | (0x02 * everyByte)) ^ ('>' * everyByte)) |
                roughlyZeroBytes(word ^ ('&' * everyByte)) | roughlyZeroBytes(word ^ (0xED * everyByte))) !=
               0;
    };
    std::size_t at = 0;
    for (; at + width < size; at += width)
        if (may(loadWord(text + at)))
            return true;
    return may(bytesBefore(loadWord(text + at), static_cast<unsigned>(size - at)));
}

#ifdef __SSE2__

// Sixteen at a time.
inline bool mayNeedCare(const char* text, std::size_t size) {
    using Bytes = char __attribute__((vector_size(16)));
    constexpr std::size_t width = sizeof(Bytes);
    for (std::size_t at = 0; at < size; at += width) {
        Bytes bytes;
        std::memcpy(&bytes, text + at, sizeof bytes);
        const auto found =
            reinterpret_cast<Bytes>(((bytes | char{0x02}) == (Bytes{} + '>')) | (bytes == (Bytes{} + '&')) |
                                    (bytes == (Bytes{} + '\xED')));
        auto marked = static_cast<unsigned>(__builtin_ia32_pmovmskb128(found));
        if (size - at < width)
            marked &= (1U << (size - at)) - 1;
        if (marked != 0)
            return true;
    }
    return false;
}

#else

inline bool mayNeedCare(const char* text, std::size_t size) {
    return portableMayNeedCare(text, size);
}

#endif

} // namespace platform::plist

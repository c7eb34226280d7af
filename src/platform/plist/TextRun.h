#pragma once

#include "platform/plist/Swar.h"

#include <cstddef>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

// The bytes of an XML text up to where it needs a look.
namespace platform::plist {

struct TextRun {
    const char* end = nullptr; // at the first '<' or '&', or at the end
    bool isAscii = true;       // all bytes before it
};

// Eight bytes at a time, on any machine.
inline TextRun portableTextRun(const char* at, const char* end) {
    std::uint64_t high = 0;
    for (; end - at >= static_cast<std::ptrdiff_t>(sizeof high); at += sizeof high) {
        const std::uint64_t word = loadWord(at);
        const std::uint64_t marked =
            zeroBytesUpToFirst(word ^ ('<' * everyByte)) | zeroBytesUpToFirst(word ^ ('&' * everyByte));
        if (marked != 0) {
            const unsigned count = firstMarked(marked);
            return {at + count, ((high | bytesBefore(word, count)) & highBits) == 0};
        }
        high |= word;
    }
    for (; at < end && *at != '<' && *at != '&'; ++at)
        high |= static_cast<unsigned char>(*at);
    return {at, (high & highBits) == 0};
}

#ifdef __SSE2__

// Sixteen at a time, for as long as so many are left. It takes a fifth of the instructions off reading a
// feed.
inline TextRun textRun(const char* at, const char* end) {
    constexpr std::ptrdiff_t width = 16;
    const __m128i opening = _mm_set1_epi8('<');
    const __m128i reference = _mm_set1_epi8('&');
    unsigned high = 0;
    for (; end - at >= width; at += width) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const __m128i found = _mm_or_si128(_mm_cmpeq_epi8(bytes, opening), _mm_cmpeq_epi8(bytes, reference));
        const auto marked = static_cast<unsigned>(_mm_movemask_epi8(found));
        const auto notAscii = static_cast<unsigned>(_mm_movemask_epi8(bytes));
        if (marked != 0) {
            const unsigned before = (marked - 1) & ~marked; // the bits below the first
            return {at + std::countr_zero(marked), (high | (notAscii & before)) == 0};
        }
        high |= notAscii;
    }
    const TextRun rest = portableTextRun(at, end);
    return {rest.end, rest.isAscii && high == 0};
}

#else

inline TextRun textRun(const char* at, const char* end) {
    return portableTextRun(at, end);
}

#endif

} // namespace platform::plist

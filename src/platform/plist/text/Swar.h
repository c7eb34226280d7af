#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

// Bytes eight at a time in one word, in portable code.
namespace platform::plist {

constexpr std::uint64_t everyByte = 0x0101010101010101U;
constexpr std::uint64_t highBits = 0x80 * everyByte;

inline std::uint64_t loadWord(const char* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

inline std::uint64_t loadBigEndian(const char* bytes) {
    const std::uint64_t word = loadWord(bytes);
    if constexpr (std::endian::native == std::endian::little)
        return __builtin_bswap64(word);
    else
        return word;
}

// The high bit of every byte that is zero, exactly.
constexpr std::uint64_t zeroBytes(std::uint64_t word) {
    return ~(((word & ~highBits) + ~highBits) | word | ~highBits);
}

// Not zero where a byte may be zero; bytes after the first that is may be marked wrongly.
constexpr std::uint64_t roughlyZeroBytes(std::uint64_t word) {
    return (word - everyByte) & ~word & highBits;
}

// The number of bytes, in memory order, before the first that is marked by its high bit.
constexpr unsigned firstMarked(std::uint64_t marked) {
    if constexpr (std::endian::native == std::endian::little)
        return static_cast<unsigned>(std::countr_zero(marked)) / 8;
    else
        return static_cast<unsigned>(std::countl_zero(marked)) / 8;
}

// Where the low bytes come first in memory, the first mark of the rough test is right, and its cheaper sum
// will do.
constexpr std::uint64_t zeroBytesUpToFirst(std::uint64_t word) {
    if constexpr (std::endian::native == std::endian::little)
        return roughlyZeroBytes(word);
    else
        return zeroBytes(word);
}

// A word's bytes before one of them, the others zero.
constexpr std::uint64_t bytesBefore(std::uint64_t word, unsigned count) {
    if (count == 0)
        return 0;
    if constexpr (std::endian::native == std::endian::little)
        return word & (~std::uint64_t{0} >> (64 - 8 * count));
    else
        return word & (~std::uint64_t{0} << (64 - 8 * count));
}

} // namespace platform::plist

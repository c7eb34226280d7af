#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Decimal digits, eight at a time in one word.
namespace platform::plist {

constexpr std::array<std::uint64_t, 20> powersOfTen = [] {
    std::array<std::uint64_t, 20> powers{};
    std::uint64_t power = 1;
    for (std::uint64_t& entry : powers) {
        entry = power;
        power *= 10;
    }
    return powers;
}();

// At least 1: zero is one digit.
inline std::size_t digitCount(std::uint64_t value) {
    const auto bits = static_cast<std::size_t>(std::bit_width(value | 1U));
    const std::size_t atMostOneLess = bits * 1233 >> 12U; // bits * log10(2)
    return atMostOneLess + (value >= powersOfTen[atMostOneLess] ? 1 : 0) + (value == 0 ? 1 : 0);
}

// A number below 10^8 with leading zeros. Each step halves the groups of digits, in all lanes at once.
inline void putEightDigits(char* out, std::uint32_t value) {
    const std::uint64_t fours = value / 10000 | (std::uint64_t{value % 10000} << 32U);
    const std::uint64_t hundreds = (fours * 10486 >> 20U) & 0x0000007F0000007FU;
    const std::uint64_t twos = hundreds | ((fours - hundreds * 100) << 16U);
    const std::uint64_t tens = (twos * 103 >> 10U) & 0x000F000F000F000FU;
    const std::uint64_t ones = tens | ((twos - tens * 10) << 8U);
    const std::uint64_t text = ones | 0x3030303030303030U;
    if constexpr (std::endian::native == std::endian::little)
        std::memcpy(out, &text, sizeof text);
    else
        for (unsigned i = 0; i < sizeof text; ++i)
            out[i] = static_cast<char>(text >> (8 * i));
}

// A number below 10^16 with leading zeros.
inline void putSixteenDigits(char* out, std::uint64_t value) {
    putEightDigits(out, static_cast<std::uint32_t>(value / powersOfTen[8]));
    putEightDigits(out + 8, static_cast<std::uint32_t>(value % powersOfTen[8]));
}

} // namespace platform::plist

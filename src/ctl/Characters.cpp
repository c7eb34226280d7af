#include "ctl/Characters.h"

#include <algorithm>
#include <iterator>

namespace ctl {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr Range unsafeRanges[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200E, 0x200F},
                                  {0x2028, 0x202E}, {0x2066, 0x2069}, {0xD800, 0xDFFF}, {0xFEFF, 0xFEFF}};

// The number of bytes that a first byte announces; 0 for a byte that is no first one.
std::size_t lengthOf(unsigned char first) {
    if (first < 0x80)
        return 1;
    if (first < 0xC0)
        return 0;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF8 ? 4 : 0;
}

} // namespace

Character characterAt(std::string_view text, std::size_t at) {
    constexpr char32_t leastOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(text[at]);
    const Character byte{first, 1, false};
    const std::size_t length = lengthOf(first);
    if (length == 0 || length > text.size() - at)
        return byte;
    char32_t code = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t next = 1; next < length; ++next) {
        const auto following = static_cast<unsigned char>(text[at + next]);
        if ((following & 0xC0U) != 0x80)
            return byte;
        code = code << 6 | (following & 0x3FU);
    }
    return code < leastOfLength[length] || code > 0x10FFFF ? byte : Character{code, length, true};
}

bool isUnsafe(char32_t code) {
    return std::any_of(std::begin(unsafeRanges), std::end(unsafeRanges),
                       [=](const Range& range) { return code >= range.first && code <= range.last; });
}

} // namespace ctl

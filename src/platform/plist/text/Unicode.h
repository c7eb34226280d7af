#pragma once

#include "platform/plist/text/Swar.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What all three forms need to know of Unicode. Texts are UTF-8; a lone surrogate, which only UTF-16 sources
// and the old form's escapes can hold, is kept in its three-byte form.
namespace platform::plist {

// Whether the bytes are UTF-8 (RFC 3629: no overlong form, no surrogate, nothing above U+10FFFF).
[[nodiscard]] bool isUtf8(std::string_view bytes);

[[nodiscard]] inline bool isAscii(std::string_view bytes) {
    constexpr std::size_t width = sizeof highBits;
    std::uint64_t seen = 0;
    if (bytes.size() >= width) { // the last word may overlap the one before
        for (std::size_t at = 0; at + width < bytes.size(); at += width)
            seen |= loadWord(bytes.data() + at);
        seen |= loadWord(bytes.data() + bytes.size() - width);
    } else {
        for (const char byte : bytes)
            seen |= static_cast<unsigned char>(byte);
    }
    return (seen & highBits) == 0;
}

// A UTF-8 text without the byte order mark at its start.
[[nodiscard]] std::string_view withoutMark(std::string_view text);

// Writes a code point's UTF-8 sequence, of up to four bytes; gives its end.
char* putCodePoint(char* out, char32_t codePoint);

// Appends a code point up to U+10FFFF, surrogates included.
void appendCodePoint(std::string& text, char32_t codePoint);

// Appends one UTF-16 unit. A low surrogate joins a high one that stands at the text's end.
void appendUtf16Unit(std::string& text, char16_t unit);

// Writes a text of two bytes a unit, the high one first, to a room of three bytes a unit; gives its end.
char* putBigEndianUtf16(char* out, std::string_view bytes);

// A code point of a text and the number of bytes it takes. Bytes that are no UTF-8 stand for themselves.
struct CodePoint {
    char32_t value = 0;
    std::size_t length = 0;
};
[[nodiscard]] CodePoint codePointAt(std::string_view text, std::size_t offset);

// The order in which the platform sorts keys: by UTF-16 units.
[[nodiscard]] bool precedesInUtf16FromTheFirst(std::string_view a, std::string_view b);
[[nodiscard]] inline bool precedesInUtf16(std::string_view a, std::string_view b) {
    const bool differInAscii = !a.empty() && !b.empty() && a[0] != b[0] && ((a[0] | b[0]) & 0x80) == 0;
    return differInAscii ? a[0] < b[0] : precedesInUtf16FromTheFirst(a, b);
}

// The line of an offset, from 1; CR, LF and CR LF end one.
[[nodiscard]] std::size_t lineAt(std::string_view text, std::size_t offset);

} // namespace platform::plist

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// What all three forms need to know of Unicode. Texts are UTF-8; a lone surrogate, which only UTF-16 sources
// and the old form's escapes can hold, is kept in its three-byte form.
namespace platform::plist {

// Whether the bytes are UTF-8 (RFC 3629: no overlong form, no surrogate, nothing above U+10FFFF).
[[nodiscard]] bool isUtf8(std::string_view bytes);

[[nodiscard]] bool isAscii(std::string_view bytes);

// Whether a text starts with a surrogate in its three-byte form, which is always a lone one.
[[nodiscard]] bool startsWithSurrogate(std::string_view text);

// The place of a text's first lone surrogate, or its length.
[[nodiscard]] std::size_t findSurrogate(std::string_view text);

// A UTF-8 text without the byte order mark at its start.
[[nodiscard]] std::string_view withoutMark(std::string_view text);

// Appends a code point up to U+10FFFF, surrogates included.
void appendCodePoint(std::string& text, char32_t codePoint);

// Appends one UTF-16 unit. A low surrogate joins a high one that stands at the text's end.
void appendUtf16Unit(std::string& text, char16_t unit);

// A text of two bytes a UTF-16 unit, the high one first. An odd byte at the end is no unit and is ignored.
[[nodiscard]] std::string textOfBigEndianUtf16(std::string_view bytes);

// A code point of a text and the number of bytes it takes. Bytes that are no UTF-8 stand for themselves.
struct CodePoint {
    char32_t value = 0;
    std::size_t length = 0;
};
[[nodiscard]] CodePoint codePointAt(std::string_view text, std::size_t offset);

// The order in which the platform sorts keys: by UTF-16 units.
[[nodiscard]] bool precedesInUtf16(std::string_view a, std::string_view b);

// The line of an offset, from 1; CR, LF and CR LF end one.
[[nodiscard]] std::size_t lineAt(std::string_view text, std::size_t offset);

} // namespace platform::plist

#pragma once

#include <cstddef>
#include <string_view>

namespace ctl {

// A character of a text in UTF-8.
struct Character {
    char32_t code = 0;      // a lone surrogate too, which has a form of three bytes
    std::size_t length = 1; // in bytes
    bool isEncoded = true;  // false where the byte at the place begins no character; code is the byte then
};
[[nodiscard]] Character characterAt(std::string_view text, std::size_t at);

// Whether a character would do more to a terminal, or to the text around it, than show itself: the control
// characters of C0 and C1 and DEL, the marks, embeddings, overrides and isolates of direction, the line and
// paragraph separators, the byte order mark, and surrogates, which are no characters. All are below U+10000.
[[nodiscard]] bool isUnsafe(char32_t code);

} // namespace ctl

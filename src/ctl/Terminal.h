#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ctl {

// A text (UTF-8) as one line that is safe to print on a terminal. Line breaks and tabs become spaces. Other
// control characters, characters that change the direction of text, and bytes that are not UTF-8 become
// U+FFFD.
[[nodiscard]] std::string terminalText(std::string_view text);

// The number of terminal cells that a text takes: a combining mark takes none, a wide character or an emoji
// takes two.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

// The text with spaces after it, or before it, up to a number of cells.
[[nodiscard]] std::string padded(const std::string& text, std::size_t width);
[[nodiscard]] std::string rightAligned(const std::string& text, std::size_t width);

} // namespace ctl

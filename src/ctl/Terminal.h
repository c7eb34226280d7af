#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ctl {

// A text (UTF-8) as one line that is safe to show on a terminal: line breaks and tabs become spaces, other
// control characters, marks that change the direction of what follows, and bytes that are no text U+FFFD.
[[nodiscard]] std::string terminalText(std::string_view text);

// How many cells of a terminal a text takes: none for combining marks, two for wide letters and pictures.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

// The text with spaces behind it, or in front of it, up to a number of cells.
[[nodiscard]] std::string padded(const std::string& text, std::size_t width);
[[nodiscard]] std::string rightAligned(const std::string& text, std::size_t width);

} // namespace ctl

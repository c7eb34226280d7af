#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ctl {

// A text (UTF-8) that is safe to print on a terminal, for people to read. Each unsafe character
// (Characters.h) is written as an escape such as \u202e, a byte that is no UTF-8 as one such as \xff. A
// backslash stays as it is, so that the text cannot be read back; JSON is for that. In one line, line feeds
// and tabs are spaces.
[[nodiscard]] std::string terminalText(std::string_view text);

// The same with its line feeds and tabs.
[[nodiscard]] std::string terminalLines(std::string_view text);

// A list in the XML form with a character reference in place of each unsafe character other than line feed
// and tab. It is read as the same value.
[[nodiscard]] std::string terminalXml(std::string_view xml);

// The number of terminal cells that a text takes: a combining mark takes none, a wide character or an emoji
// takes two.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

// The text with spaces after it, or before it, up to a number of cells.
[[nodiscard]] std::string padded(const std::string& text, std::size_t width);
[[nodiscard]] std::string rightAligned(const std::string& text, std::size_t width);

} // namespace ctl

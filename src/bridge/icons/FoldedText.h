#pragma once

#include <QString>

#include <string_view>

namespace bridge {

// A UTF-8 text in the form in which words are compared: without case, accents and vowel signs, with other
// forms of a letter turned into one (full-width Latin, half-width Katakana, Persian and Arabic Kaf and Yeh),
// and everything that is neither letter nor digit turned into single spaces, one of which begins and one ends
// the text. Arabic words are without their article. A text without a letter or digit is " ".
[[nodiscard]] QString foldedText(std::string_view text);

} // namespace bridge

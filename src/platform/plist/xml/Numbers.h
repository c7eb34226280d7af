#pragma once

#include "platform/plist/Value.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// The numbers of the XML form as texts, whatever the process's locale.
namespace platform::plist {

// A <real>'s text: after leading white space (the platform's, which is wider than ASCII's) a decimal number;
// or alone, in any case, `nan`, `inf`, `infinity`, the latter two with a sign or without. A number too large
// is an infinity and one too small a zero, as in C. Any other text gives no number.
[[nodiscard]] std::optional<double> parseReal(std::string_view text);

// What an <integer>'s text was, or what is wrong with it.
struct IntegerText {
    Integer value;
    const char* fault = nullptr; // one sentence; null if the text is an integer
    std::size_t faultOffset = 0; // in the text
};
// White space, a sign, white space, then decimal digits or 0x and hexadecimal ones; from -2^63 to 2^64-1.
[[nodiscard]] IntegerText parseInteger(std::string_view text);

// Appends a number as C's "%.17g" writes it, but `0.0` for either zero, `nan`, `+infinity` and `-infinity`.
void appendReal(std::string& out, double value);

void appendInteger(std::string& out, Integer value);

} // namespace platform::plist

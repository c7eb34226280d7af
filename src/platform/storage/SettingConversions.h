#pragma once

#include "platform/plist/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Conversions of stored settings to integers and strings.
namespace platform {

// A real is truncated toward zero (3.7 is 3, NaN is 0), a boolean is 1 or 0, and a string is its leading
// integer. Numbers beyond 64 bits are clamped. Values of other kinds are 0.
[[nodiscard]] std::int64_t settingAsInteger(const plist::Value& value);

// A string is unchanged, an integer is decimal, a real is what textOfReal returns, and a boolean is "1" or
// "0". Absent for values of other kinds.
[[nodiscard]] std::optional<std::string> settingAsText(const plist::Value& value);

// The decimal integer at the start of a string, after ASCII white space and an optional sign, clamped to 64
// bits. 0 if the string does not start with an integer.
[[nodiscard]] std::int64_t leadingInteger(std::string_view text);

// A real with the fewest digits that read back as the same value, in the layout of printf's %.17g in the C
// locale: 3.0 is "3", 3.5 is "3.5", 1e16 is "10000000000000000", 1e17 is "1e+17", 0.00001 is "1e-05". The
// others are "nan", "inf" and "-inf".
[[nodiscard]] std::string textOfReal(double value);

} // namespace platform

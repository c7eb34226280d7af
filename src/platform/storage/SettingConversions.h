#pragma once

#include "platform/plist/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// How a stored setting reads as another kind, as the platform's settings do.
namespace platform {

// A real is truncated toward zero (3.7 is 3, NaN is 0), a boolean is 1 or 0, a text gives its leading
// integer; what lies beyond 64 bits clamps. Other kinds: 0.
[[nodiscard]] std::int64_t settingAsInteger(const plist::Value& value);

// A text as it stands, an integer in decimal, a real as textOfReal, a boolean as "1" or "0". Other kinds:
// none.
[[nodiscard]] std::optional<std::string> settingAsText(const plist::Value& value);

// The integer that a text begins with after ASCII white space: a sign or none, then decimal digits; clamped
// to 64 bits. 0 where none stands there.
[[nodiscard]] std::int64_t leadingInteger(std::string_view text);

// The fewest digits that read back as the same real, laid out as printf's %.17g in the C locale: 3.0 is "3",
// 3.5 is "3.5", 1e16 is "10000000000000000", 1e17 is "1e+17", 0.00001 is "1e-05"; "nan", "inf", "-inf".
[[nodiscard]] std::string textOfReal(double value);

} // namespace platform

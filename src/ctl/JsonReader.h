#pragma once

#include "platform/plist/Value.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

namespace ctl {

// Why a text is not JSON, and the place of the byte at which the reader stopped.
struct JsonError {
    std::size_t line = 1;
    std::size_t column = 1; // in bytes
    std::string message;
};

// Reads JSON (RFC 8259, UTF-8) into property-list values without rounding an integer: a number without a
// fraction and an exponent is an integer from -2^63 to 2^64-1, and any other number is a real. The keys of an
// object keep their order. Errors are also a key that an object holds twice, a number out of range, a lone
// surrogate, and more than 501 nested arrays and objects.
[[nodiscard]] std::variant<platform::plist::Value, JsonError> readJson(std::string_view text);

} // namespace ctl

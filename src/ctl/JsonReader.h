#pragma once

#include "platform/plist/Value.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

namespace ctl {

// Why a text is no JSON, and where.
struct JsonError {
    std::size_t line = 1;
    std::size_t column = 1; // in bytes
    std::string message;
};

// Reads JSON (RFC 8259, UTF-8) to property-list values that keep every digit: a number without a fraction and
// an exponent is an integer from -2^63 to 2^64-1, any other one a real. An object's keys keep their order;
// one that stands twice is an error, as are a lone surrogate and more than 500 levels.
[[nodiscard]] std::variant<platform::plist::Value, JsonError> readJson(std::string_view text);

} // namespace ctl

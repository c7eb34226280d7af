#include "platform/storage/SettingConversions.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace platform {

namespace {

using Limits = std::numeric_limits<std::int64_t>;

std::int64_t truncated(double real) {
    constexpr double end = 9223372036854775808.0; // 2^63, the first value out of range
    if (std::isnan(real))
        return 0;
    if (real >= end)
        return Limits::max();
    if (real < -end)
        return Limits::min();
    return static_cast<std::int64_t>(real);
}

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string textOfInteger(plist::Integer integer) {
    return integer.isLarge ? std::to_string(integer.bits)
                           : std::to_string(static_cast<std::int64_t>(integer.bits));
}

} // namespace

std::int64_t leadingInteger(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    const bool isNegative = text.substr(0, 1) == "-";
    if (text.substr(0, 1) == "+" && text.substr(1, 1) != "-")
        text.remove_prefix(1);
    std::int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range)
        return isNegative ? Limits::min() : Limits::max();
    return result.ec == std::errc{} ? number : 0;
}

std::string textOfReal(double value) {
    // %.17g uses an exponent outside this range.
    const double magnitude = std::fabs(value);
    const bool isFixed = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e17);
    char text[64];
    const auto format = isFixed ? std::chars_format::fixed : std::chars_format::scientific;
    const auto end = std::to_chars(text, text + sizeof text, value, format).ptr;
    return {text, end};
}

std::int64_t settingAsInteger(const plist::Value& value) {
    if (const auto* integer = value.integer())
        return integer->isLarge ? Limits::max() : static_cast<std::int64_t>(integer->bits);
    if (const double* real = value.real())
        return truncated(*real);
    if (const bool* boolean = value.boolean())
        return *boolean ? 1 : 0;
    if (const std::optional<std::string_view> text = value.string())
        return leadingInteger(*text);
    return 0;
}

std::optional<std::string> settingAsText(const plist::Value& value) {
    if (const std::optional<std::string_view> text = value.string())
        return std::string(*text);
    if (const auto* integer = value.integer())
        return textOfInteger(*integer);
    if (const double* real = value.real())
        return textOfReal(*real);
    if (const bool* boolean = value.boolean())
        return *boolean ? "1" : "0";
    return std::nullopt;
}

} // namespace platform

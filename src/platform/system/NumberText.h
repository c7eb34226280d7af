#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace platform {

// The number that a text consists of, in the notation of the C locale. The result is absent if the text holds
// anything else, a space or a plus sign too, or if the number is out of range.
template <class Number>
[[nodiscard]] std::optional<Number> numberFromText(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

} // namespace platform

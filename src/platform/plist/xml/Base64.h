#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// The texts of <data>: base 64 (RFC 4648), read as leniently as the platform does.
namespace platform::plist {

// Characters outside the alphabet are passed over, and so is what is left of an incomplete group of four.
// None where a byte is not ASCII.
[[nodiscard]] std::optional<std::string> decodeBase64(std::string_view text);

// Whole lines, each after `indent` tabs; a line takes 76 characters less 8 for each of the first eight tabs.
[[nodiscard]] std::size_t base64Size(std::size_t bytes, std::size_t indent);
char* encodeBase64(char* out, std::string_view bytes, std::size_t indent);

} // namespace platform::plist

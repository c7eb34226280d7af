#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// The texts of <data>: base 64 (RFC 4648), read as leniently as the platform does.
namespace platform::plist {

// Characters outside the alphabet are passed over, and so is what is left of an incomplete group of four.
// A text with a byte that is not ASCII gives no result.
[[nodiscard]] std::optional<std::string> decodeBase64(std::string_view text);

// Appends whole lines, each after `indent` tabs; a line takes 76 characters less 8 for each of the first
// eight tabs, and more tabs than eight are not written.
void appendBase64(std::string& out, std::string_view bytes, std::size_t indent);

} // namespace platform::plist

#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <system_error>

namespace ctl {

// What is longer is refused, as platform::readFile refuses it, so that input without an end does not use up
// all memory.
inline constexpr std::size_t longestInput = std::size_t{1} << 30;

// The bytes of a file, or of standard input for the name "-". On failure sets the error.
[[nodiscard]] std::optional<std::string> readInput(const std::string& file, std::istream& standardInput,
                                                   std::error_code& error);

// The bytes up to a stream's end, if they are no more than `longest`.
[[nodiscard]] std::optional<std::string> readToEnd(std::istream& stream, std::size_t longest,
                                                   std::error_code& error);

// Why a file of the container that exists cannot be read, although the widget takes it for an absent one. No
// error for an absent one.
[[nodiscard]] std::error_code readingError(const std::string& file);

} // namespace ctl

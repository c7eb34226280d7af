#pragma once

#include <string>
#include <string_view>

namespace bridge_test {

// A gzip stream of a text.
[[nodiscard]] std::string packed(std::string_view text);

} // namespace bridge_test

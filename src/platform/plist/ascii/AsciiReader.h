#pragma once

#include "platform/plist/Reader.h"

#include <string_view>

namespace platform::plist {

// The old ASCII form, strings files included: `{key = value;}`, `(a, b)`, `<0fbd77>`, quoted and plain texts.
[[nodiscard]] ReadResult readAscii(std::string_view text);

} // namespace platform::plist

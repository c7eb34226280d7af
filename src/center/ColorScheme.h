#pragma once

#include <cstdint>

namespace center {

// What the desktop's own surfaces look like.
enum class ColorScheme : std::uint8_t { Light, Dark };

} // namespace center

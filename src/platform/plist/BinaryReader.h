#pragma once

#include "platform/plist/Reader.h"

#include <string_view>

namespace platform::plist {

// The binary form (`bplist00`). What the list shares, the value shares. Its own depth limit: a value may
// stand up to 512 containers deep, and a container that nothing is in one deeper.
[[nodiscard]] ReadResult readBinary(std::string_view bytes);

} // namespace platform::plist

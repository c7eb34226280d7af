#pragma once

#include "bridge/Feed.h"
#include "bridge/Programs.h"

namespace bridge {

// The programs whose files can be connected, and the glyphs of their plans.
[[nodiscard]] Programs knownPrograms();
[[nodiscard]] Icons knownIcons();

} // namespace bridge

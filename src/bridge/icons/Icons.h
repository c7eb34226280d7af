#pragma once

#include "bridge/plans/Plan.h"

#include <string_view>

namespace bridge {

// The name of the glyph that a plan's row shows: the one that its category means, otherwise its name,
// otherwise its payee (see IconWords); "salary" for an income that no word tells more of, "planned" for an
// expense. A transfer has "transfer", whatever its words. Names are shorter than 23 characters, as those of
// glyphs have to be.
[[nodiscard]] std::string_view iconFor(const Plan& plan);

// The PNG file of a glyph; empty where there is none of that name.
[[nodiscard]] std::string_view iconFile(std::string_view name);

} // namespace bridge

#pragma once

#include "bridge/sources/Reading.h"

#include <string_view>

namespace bridge {

// The scheduled plans of a HomeBank file (.xhb), in the order of the file. Templates that are not scheduled
// are no plans. Due today counts as late there; of more than ten late ones it shows no number, and eleven are
// listed.
[[nodiscard]] Reading readHomeBank(std::string_view bytes, const Period& period);

} // namespace bridge

#pragma once

#include "bridge/sources/Reading.h"

#include <string_view>

namespace bridge {

// The schedules of a KMyMoney file (.kmy, packed or not), in the order of the file; finished ones have no
// occurrences. Days are the adjusted ones that the program shows; holidays, which are settings of the
// program, are not known. Due today is not overdue there.
[[nodiscard]] Reading readKMyMoney(std::string_view bytes, const Period& period);

} // namespace bridge

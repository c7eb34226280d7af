#pragma once

#include "bridge/sources/Reading.h"

#include <string_view>

namespace bridge {

// The enabled plans of a GnuCash file (XML, packed or not), in the order of the file. Due is what "Since Last
// Run" offers to create: every occurrence up to today, however many, and postponed ones. What it offers some
// days ahead keeps its own day here.
//
// A plan has no amount where a formula has variables, or is not stored as a number and can be read in two
// ways.
[[nodiscard]] Reading readGnuCash(std::string_view bytes, const Period& period);

} // namespace bridge

#pragma once

#include "bridge/Feed.h"
#include "bridge/Programs.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace bridge {

// Runs the command that the arguments (without the program's name) ask for. Returns the exit status: 0 done,
// 1 the command failed, 2 wrong usage.
[[nodiscard]] int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
                      Programs programs, const Icons& icons);

} // namespace bridge

#pragma once

#include "ctl/Report.h"

#include <string>
#include <vector>

namespace ctl {

// Runs the command that the arguments (without the program's name) ask for. Returns the exit status: 0 done,
// 1 the command failed, 2 wrong usage.
[[nodiscard]] int run(const std::vector<std::string>& arguments, Streams& streams);

} // namespace ctl

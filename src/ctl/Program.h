#pragma once

#include "ctl/Report.h"

#include <string>
#include <vector>

namespace ctl {

// Does what the arguments (without the program's name) ask for and gives the exit status: 0 done, 1 the thing
// asked for failed, 2 wrong usage.
[[nodiscard]] int run(const std::vector<std::string>& arguments, Streams& streams);

} // namespace ctl

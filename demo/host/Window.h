#pragma once

#include <string>
#include <vector>

namespace host {

// MAILBOX CONTAINERS: the window's process, until it is ended from outside.
[[nodiscard]] int runWindow(const std::vector<std::string>& words, char* name);

} // namespace host

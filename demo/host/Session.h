#pragma once

#include <string>
#include <vector>

namespace host {

// CONTAINERS PANEL [OPTION...]: the panel with the window beside it, until the panel ends; gives the panel's
// exit status. Asked to end by a signal, it ends both, cleans up and dies of that signal.
[[nodiscard]] int runSession(const std::vector<std::string>& words);

// MAILBOX URL: what the desktop starts when the panel opens a URL.
[[nodiscard]] int runDelivery(const std::vector<std::string>& words);

} // namespace host

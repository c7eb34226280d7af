#pragma once

namespace panel {

// Shows the panel until it is closed and nothing that the user has chosen is pending. Returns the exit
// status.
int showPanel();

} // namespace panel

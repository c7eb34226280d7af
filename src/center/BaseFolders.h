#pragma once

#include <string>

// The folders of the user's files (freedesktop standard of base directories). A variable that is empty or
// relative counts as unset.
namespace center {

// $XDG_CONFIG_HOME, else ~/.config.
[[nodiscard]] std::string configFolder();

// $XDG_STATE_HOME, else ~/.local/state.
[[nodiscard]] std::string stateFolder();

} // namespace center

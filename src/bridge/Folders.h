#pragma once

#include <string>

// The user's folders (freedesktop standard of base directories). A variable that is empty or relative counts
// as unset.
namespace bridge {

[[nodiscard]] std::string homeFolder();
[[nodiscard]] std::string configFolder(); // $XDG_CONFIG_HOME, else ~/.config
[[nodiscard]] std::string dataFolder();   // $XDG_DATA_HOME, else ~/.local/share

// The folder of the database, korvel-today in $XDG_STATE_HOME or ~/.local/state.
[[nodiscard]] std::string ownStateFolder();
[[nodiscard]] std::string configurationFile();
[[nodiscard]] std::string databaseFile();

// The journal of payments of a connected file.
[[nodiscard]] std::string paidJournalFile(const std::string& id);

} // namespace bridge

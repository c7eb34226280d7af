#pragma once

#include <string_view>

// What the centre can be asked for, by a further start or over the bus.
namespace center {

inline constexpr std::string_view showCommand = "show";
inline constexpr std::string_view toggleCommand = "toggle";
inline constexpr std::string_view hideCommand = "hide";
inline constexpr std::string_view quitCommand = "quit";
inline constexpr std::string_view backgroundCommand = "background"; // that it runs, and nothing else
inline constexpr std::string_view addCommand = "add";               // a transaction, in the host application
inline constexpr std::string_view openApplicationCommand = "open-application"; // the host application
inline constexpr std::string_view showFolderCommand = "show-folder";           // the shared folder

} // namespace center

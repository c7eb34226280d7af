#pragma once

#include <string>
#include <utility>
#include <vector>

// How a desktop learns, for one process and its children, which program opens the host application's URLs:
// a desktop entry and an association (freedesktop's Desktop Entry and MIME Applications standards) in
// data and config folders of that process's own.
namespace host {

// One word of an Exec line: bare where that is safe (some openers know no quotes), else quoted and escaped.
[[nodiscard]] std::string execWord(const std::string& word);

// The entry of a program that is started with these words and then the URL. It names both spellings of the
// scheme: gio looks up the lower-case one, xdg-open the one that it is given.
[[nodiscard]] std::string desktopEntry(const std::vector<std::string>& command);
[[nodiscard]] std::string associations();

// Writes both below a folder. False where that fails.
[[nodiscard]] bool writeRegistration(const std::string& folder, const std::vector<std::string>& command);

using Variables = std::vector<std::pair<std::string, std::string>>;

// The variables by which that folder comes first: the user's own data and config folders, which it takes the
// place of, move to the front of the system's, so that themes and other programs are still found.
[[nodiscard]] Variables environmentFor(const std::string& folder);

} // namespace host

#pragma once

#include <optional>
#include <string>
#include <vector>

// Which program a desktop starts for a type, by freedesktop's standards of Desktop Entries and of MIME
// Applications Associations. Files are read and nothing is started.
namespace ctl {

struct DesktopEntry {
    std::string path;
    std::string exec;
    bool isStartedByBus = false; // over the session bus, so that it needs no Exec line
};

struct HandlerSearch {
    std::optional<DesktopEntry> handler;
    std::vector<std::string> notInstalled; // entries that an association names and that are not there
};

// The handler of a type such as "x-scheme-handler/mailto": the first entry that is installed among the
// default applications, then among the added associations and the caches, in the order of the folders.
[[nodiscard]] HandlerSearch findHandler(const std::string& type);

// The program that an Exec line starts, without its quotes; empty where the line names none.
[[nodiscard]] std::string programOfExec(const std::string& exec);

// Whether an Exec line has a place for a URL.
[[nodiscard]] bool takesUrl(const std::string& exec);

} // namespace ctl

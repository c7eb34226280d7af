#include "platform/storage/GroupContainers.h"

#include "platform/storage/Files.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

std::string& chosenFolder() {
    static std::string folder;
    return folder;
}

std::string environment(const char* variable) {
    const char* value = std::getenv(variable);
    return value ? value : "";
}

std::string homeFolder() {
    std::string home = environment("HOME");
    if (home.empty())
        if (const passwd* user = getpwuid(getuid()); user && user->pw_dir)
            home = user->pw_dir;
    return home;
}

std::string dataFolder() {
    const std::string folder = environment("XDG_DATA_HOME");
    if (folder.substr(0, 1) == "/")
        return folder;
    return pathByAppending(homeFolder(), ".local/share");
}

// An identifier must be a single component of a path, so that it cannot lead out of the folder of all
// containers.
bool isIdentifier(const std::string& text) {
    return !text.empty() && text != "." && text != ".." && text.find('/') == std::string::npos;
}

} // namespace

std::string GroupContainers::folder() {
    if (!chosenFolder().empty())
        return chosenFolder();
    if (const std::string folder = environment("KORVEL_GROUP_CONTAINERS"); !folder.empty())
        return folder;
    return pathByAppending(dataFolder(), "group-containers");
}

void GroupContainers::setFolder(std::string folder) {
    chosenFolder() = std::move(folder);
}

std::optional<std::string> GroupContainers::containerForGroup(const std::string& identifier) {
    if (!isIdentifier(identifier))
        return std::nullopt;
    std::string path = containerPath(identifier);
    if (!isFolder(path))
        return std::nullopt;
    return path;
}

std::string GroupContainers::containerPath(const std::string& identifier) {
    return pathByAppending(folder(), identifier);
}

} // namespace platform

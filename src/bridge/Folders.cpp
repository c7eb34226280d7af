#include "bridge/Folders.h"

#include "platform/storage/Files.h"

#include <QDir>

#include <cstdlib>

namespace bridge {

namespace {

std::string folder(const char* variable, const char* nameInHome) {
    const char* value = std::getenv(variable);
    if (value && *value == '/')
        return value;
    return platform::pathByAppending(homeFolder(), nameInHome);
}

constexpr const char* ownFolder = "korvel-today";

} // namespace

std::string homeFolder() {
    return QDir::homePath().toStdString();
}

std::string configFolder() {
    return folder("XDG_CONFIG_HOME", ".config");
}

std::string dataFolder() {
    return folder("XDG_DATA_HOME", ".local/share");
}

std::string ownStateFolder() {
    return platform::pathByAppending(folder("XDG_STATE_HOME", ".local/state"), ownFolder);
}

std::string configurationFile() {
    return platform::pathByAppending(platform::pathByAppending(configFolder(), ownFolder), "bridge.json");
}

std::string databaseFile() {
    return platform::pathByAppending(ownStateFolder(), "bridge.sqlite");
}

std::string paidJournalFile(const std::string& id) {
    return platform::pathByAppending(ownStateFolder(), "paid-" + id + ".journal");
}

} // namespace bridge

#include "center/BaseFolders.h"

#include "platform/storage/Files.h"

#include <QDir>

#include <cstdlib>

namespace center {

namespace {

std::string folder(const char* variable, const char* nameInHome) {
    const char* value = std::getenv(variable);
    if (value && *value == '/')
        return value;
    return platform::pathByAppending(QDir::homePath().toStdString(), nameInHome);
}

} // namespace

std::string configFolder() {
    return folder("XDG_CONFIG_HOME", ".config");
}

std::string stateFolder() {
    return folder("XDG_STATE_HOME", ".local/state");
}

} // namespace center

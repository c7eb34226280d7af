#include "panel/Confinement.h"

#include "model/GroupIdentifiers.h"
#include "platform/confinement/FileConfinement.h"
#include "platform/confinement/SystemCallConfinement.h"
#include "platform/confinement/SystemFiles.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/CurrentTimeZone.h"

#include <QFile>
#include <QLibraryInfo>

#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace panel {

namespace {

// A sanitizer looks for leaks at the end of the process, which it traces for that.
#ifdef __SANITIZE_ADDRESS__
constexpr bool isCheckedForLeaks = true;
#else
constexpr bool isCheckedForLeaks = false;
#endif

std::string containerPath() {
    return platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
}

// Where it is not installed with the system's libraries.
void addToolkit(std::vector<std::string>& readable) {
    for (const auto location : {QLibraryInfo::LibrariesPath, QLibraryInfo::PluginsPath})
        readable.push_back(QFile::encodeName(QLibraryInfo::path(location)).toStdString());
}

// Whether a path leads to another file or folder than the one that is open. A path that leads nowhere does
// not.
bool isAnother(const std::string& path, const platform::OpenFile& known) {
    struct stat now {};
    struct stat then {};
    if (stat(path.c_str(), &now) != 0)
        return false;
    return !known.isOpen() || fstat(known.number(), &then) != 0 || then.st_dev != now.st_dev ||
           then.st_ino != now.st_ino;
}

} // namespace

std::error_code Confinement::begin() {
    const int version = platform::landlockVersion();
    if (version > 0) {
        container_.emplace(open(containerPath().c_str(), O_PATH | O_CLOEXEC));
        timeZoneFile_.emplace(open(platform::currentTimeZoneFile().c_str(), O_PATH | O_CLOEXEC));
        platform::AllowedFiles files = platform::systemFiles();
        platform::add(files, platform::desktopFiles());
        files.readable.push_back(platform::currentTimeZoneFile());
        addToolkit(files.readable);
        files.writable.push_back(containerPath());
        if (const std::error_code error = platform::confineFiles(files, version))
            return error;
        areFilesConfined_ = true;
    }
    if (!platform::canConfineSystemCalls() || isCheckedForLeaks)
        return {};
    return platform::confineSystemCalls(platform::Sockets::Local, version);
}

std::error_code Confinement::forbidConnections() {
    return platform::canConfineSystemCalls() ? platform::forbidNewConnections() : std::error_code();
}

bool Confinement::isOutdated() const {
    if (!areFilesConfined_)
        return false;
    const std::string zone = platform::currentTimeZoneFile();
    return isAnother(containerPath(), *container_) ||
           (isAnother(zone, *timeZoneFile_) &&
            !platform::OpenFile(open(zone.c_str(), O_RDONLY | O_CLOEXEC)).isOpen());
}

} // namespace panel

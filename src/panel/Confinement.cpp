#include "panel/Confinement.h"

#include "model/GroupIdentifiers.h"
#include "platform/confinement/FileConfinement.h"
#include "platform/confinement/SystemCallConfinement.h"
#include "platform/confinement/SystemFiles.h"
#include "platform/desktop/LayerShell.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/CurrentTimeZone.h"

#include <QFile>
#include <QLibraryInfo>

#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace panel {

namespace {

std::string containerPath() {
    return platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
}

// What whoever started this process has left open is none of its business.
void closeOthers(int kept) {
    const auto number = static_cast<unsigned>(kept);
    close_range(STDERR_FILENO + 1, number - 1, 0);
    close_range(number + 1, ~0U, 0);
}

std::string pathOf(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

// A terminal is open for reading too, and what is typed there is not for this process.
void keepFromReading(int stream) {
    if (isatty(stream) != 1)
        return;
    const platform::OpenFile file(open(pathOf(stream).c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
    if (file.isOpen())
        dup2(file.number(), stream);
}

// Where it is not installed with the system's libraries.
void addToolkit(std::vector<std::string>& readable) {
    for (const auto location : {QLibraryInfo::LibrariesPath, QLibraryInfo::PluginsPath})
        readable.push_back(QFile::encodeName(QLibraryInfo::path(location)).toStdString());
}

} // namespace

std::error_code Confinement::begin(int keptDescriptor) {
    closeOthers(keptDescriptor);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        keepFromReading(stream);
    const int version = platform::landlockVersion();
    if (version > 0) {
        container_.emplace(containerPath());
        timeZoneFile_.emplace(platform::currentTimeZoneFile());
        platform::AllowedFiles files = platform::systemFiles();
        platform::add(files, platform::desktopFiles());
        addToolkit(files.readable);
        files.readable.push_back(platform::layerShellFolder());
        if (container_->file().isOpen()) // it, and not what may have taken its place
            files.writable.push_back(pathOf(container_->file().number()));
        if (const std::error_code error = platform::confineFiles(files, version))
            return error;
        areFilesConfined_ = true;
    }
    if (!platform::canConfineSystemCalls())
        return {};
    return platform::confineSystemCalls(platform::Sockets::Local, version);
}

std::error_code Confinement::forbidConnections() {
    return platform::canConfineSystemCalls() ? platform::forbidNewConnections() : std::error_code();
}

bool Confinement::isOutdated() const {
    return areFilesConfined_ && (container_->isAnother() || timeZoneFile_->isOutOfReach());
}

} // namespace panel

#include "platform/storage/FileVersion.h"

#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/OpenFile.h"

namespace platform {

FileVersion FileVersion::of(const struct stat& status) {
    return {true,           status.st_dev,         status.st_ino,         status.st_mode,
            status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

FileVersion FileVersion::at(const std::string& path) {
    struct stat status {};
    if (holdsNul(path) || FileSystemCalls::current().status(path.c_str(), &status) != 0)
        return {};
    return of(status);
}

} // namespace platform

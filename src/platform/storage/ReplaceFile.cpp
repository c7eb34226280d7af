#include "platform/storage/FilePlace.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"
#include "platform/storage/OpenFile.h"
#include "platform/storage/TemporaryFile.h"

#include <optional>

namespace platform {

namespace {

std::error_code errorOf(std::errc error) {
    return std::make_error_code(error);
}

// What stands at the target; soft where that is nothing.
std::error_code inspect(int folder, const std::string& name, std::optional<struct stat>& old) {
    struct stat status {};
    if (FileSystemCalls::current().statusAt(folder, name.c_str(), &status) != 0)
        return errno == ENOENT ? std::error_code{} : lastError();
    if (S_ISDIR(status.st_mode))
        return errorOf(std::errc::is_a_directory);
    if (!S_ISREG(status.st_mode))
        return errorOf(std::errc::invalid_argument);
    old = status;
    return {};
}

} // namespace

std::error_code replaceFile(const std::string& path, std::string_view bytes) {
    FilePlace place;
    if (const auto error = place.find(path))
        return error;
    std::optional<struct stat> old;
    if (const auto error = inspect(place.folder(), place.name(), old))
        return error;
    TemporaryFile file(place.folder());
    if (const auto error = file.writeWhole(old, bytes))
        return error;
    if (const auto error = file.takePlaceOf(place.name()))
        return error;
    return place.syncFolder();
}

} // namespace platform

#include "platform/storage/ClaimedFile.h"

#include "platform/storage/FilePlace.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"
#include "platform/storage/OpenFile.h"
#include "platform/storage/TemporaryFile.h"

namespace platform {

namespace {

std::string claimedName(const std::string& name) {
    return name + ".aside";
}

} // namespace

std::error_code claimFile(const std::string& path) {
    FilePlace place;
    if (const auto error = place.find(path))
        return error;
    const std::string claimed = claimedName(place.name());
    if (FileSystemCalls::current().rename(place.folder(), place.name().c_str(), claimed.c_str()) != 0)
        return lastError();
    return place.syncFolder();
}

std::optional<std::string> claimedPath(const std::string& path) {
    FilePlace place;
    if (place.find(path))
        return std::nullopt;
    return pathByAppending(place.folderPath(), claimedName(place.name()));
}

std::error_code replaceClaimedFile(const std::string& path, std::string_view bytes) {
    FilePlace place;
    if (const auto error = place.find(path))
        return error;
    const std::string claimed = claimedName(place.name());
    struct stat old {};
    if (FileSystemCalls::current().statusAt(place.folder(), claimed.c_str(), &old) != 0)
        return lastError();
    TemporaryFile file(place.folder());
    if (const auto error = file.write(old, bytes))
        return error;
    if (const auto error = file.takeFreeName(place.name()))
        return error;
    if (FileSystemCalls::current().unlink(place.folder(), claimed.c_str()) != 0)
        return lastError();
    return place.syncFolder();
}

} // namespace platform

#include "platform/storage/FilePlace.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"

namespace platform {

namespace {

std::string asideOf(const std::string& name) {
    return name + ".aside";
}

} // namespace

std::optional<std::string> pathAside(const std::string& path) {
    FilePlace place;
    if (place.find(path))
        return std::nullopt;
    return pathByAppending(place.folderPath(), asideOf(place.name()));
}

std::error_code setAside(const std::string& path) {
    FilePlace place;
    if (const auto error = place.find(path))
        return error;
    const std::string aside = asideOf(place.name());
    if (FileSystemCalls::current().rename(place.folder(), place.name().c_str(), aside.c_str()) != 0)
        return lastError();
    return place.syncFolder();
}

std::error_code removeAside(const std::string& path) {
    FilePlace place;
    if (const auto error = place.find(path))
        return error;
    if (FileSystemCalls::current().unlink(place.folder(), asideOf(place.name()).c_str()) != 0)
        return lastError();
    return place.syncFolder();
}

} // namespace platform

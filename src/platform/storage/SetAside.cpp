#include "platform/storage/FilePlace.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"
#include "platform/storage/OpenFile.h"
#include "platform/storage/TemporaryFile.h"

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

std::error_code replaceAside(const std::string& path, std::string_view bytes) {
    FilePlace place;
    if (const auto error = place.find(path))
        return error;
    const std::string aside = asideOf(place.name());
    struct stat old {};
    if (FileSystemCalls::current().statusAt(place.folder(), aside.c_str(), &old) != 0)
        return lastError();
    TemporaryFile file(place.folder());
    if (const auto error = file.writeWhole(old, bytes))
        return error;
    if (const auto error = file.takeFreePlace(place.name()))
        return error;
    if (FileSystemCalls::current().unlink(place.folder(), aside.c_str()) != 0)
        return lastError();
    return place.syncFolder();
}

} // namespace platform

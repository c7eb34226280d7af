#include "ctl/check/Access.h"

#include "ctl/Host.h"
#include "platform/storage/FilePlace.h"
#include "platform/storage/Files.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace ctl {

namespace {

std::string message(int error) {
    return std::generic_category().message(error);
}

std::optional<std::string> resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> result(realpath(path.c_str(), nullptr), &std::free);
    return result ? std::optional<std::string>(result.get()) : std::nullopt;
}

// The parent of an absolute or relative path; empty for a single name.
std::string parentOf(const std::string& path) {
    const std::size_t end = path.find_last_not_of('/');
    const std::size_t slash = end == std::string::npos ? std::string::npos : path.rfind('/', end);
    if (slash == std::string::npos)
        return {};
    return slash == 0 ? "/" : path.substr(0, slash);
}

// The first folder on the way to a path that may not be searched; empty where there is none.
std::string closedFolder(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        const std::string folder = path.substr(0, slash);
        if (faccessat(AT_FDCWD, folder.c_str(), X_OK, AT_EACCESS) != 0 && errno == EACCES)
            return folder;
    }
    return {};
}

std::optional<std::string> refusalInFolder(int folder, const std::string& folderPath, const char* name) {
    if (faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) != 0)
        return "no file can be made in " + folderPath + ": " + message(errno);
    struct stat file {};
    if (fstatat(folder, name, &file, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? std::nullopt : std::optional(message(errno));
    if (S_ISDIR(file.st_mode))
        return "a folder is in its place";
    if (!S_ISREG(file.st_mode))
        return "what is in its place is no regular file";
    struct stat status {};
    if (fstat(folder, &status) == 0 && isKeptFrom(geteuid(), status, file))
        return "it belongs to another user, and " + folderPath + " lets only the owner replace a file";
    return std::nullopt;
}

} // namespace

std::optional<std::string> placeOutside(const std::string& folder, const std::string& path) {
    const auto end = resolved(path);
    const auto home = resolved(folder);
    const bool isOutside = end && home && *end != *home && !end->starts_with(*home + "/");
    return isOutside ? end : std::nullopt;
}

std::string refusalOf(const std::string& path, const std::error_code& error) {
    if (error != std::errc::permission_denied)
        return error.message();
    if (const std::string folder = closedFolder(path); !folder.empty())
        return "the folder " + folder + " may not be searched";
    const bool isOutside =
        placeOutside(containerPath(), path) || placeOutside(containerPath(), parentOf(path));
    return error.message() + (isOutside ? "; it is outside the container" : "");
}

std::optional<std::string> refusalToMake(const std::string& folder) {
    if (platform::isFolder(folder))
        return std::nullopt;
    struct stat status {};
    if (lstat(folder.c_str(), &status) == 0)
        return folder + (S_ISLNK(status.st_mode) ? " is a link that leads to no folder" : " is no folder");
    if (errno != ENOENT)
        return folder + " cannot be made: " + refusalOf(folder, {errno, std::generic_category()});
    const std::string parent = parentOf(folder);
    const std::string above = parent.empty() ? "." : parent;
    if (!platform::isFolder(above))
        return refusalToMake(above);
    if (faccessat(AT_FDCWD, above.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return folder + " cannot be made: " + message(errno);
    return std::nullopt;
}

std::optional<std::string> refusalToReplace(const std::string& path) {
    if (path.find('\0') != std::string::npos)
        return "a path cannot hold a NUL byte";
    const std::string folder = parentOf(path);
    if (!folder.empty() && !platform::isFolder(folder))
        return refusalToMake(folder);
    platform::FilePlace place;
    if (const std::error_code error = place.find(path))
        return refusalOf(path, error);
    return refusalInFolder(place.folder(), place.folderPath(), place.name().c_str());
}

bool isKeptFrom(uid_t user, const struct stat& folder, const struct stat& file) {
    return (folder.st_mode & S_ISVTX) != 0 && user != 0 && file.st_uid != user && folder.st_uid != user;
}

} // namespace ctl

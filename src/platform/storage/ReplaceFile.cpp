#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"
#include "platform/storage/OpenFile.h"
#include "platform/storage/TemporaryFile.h"

#include <climits>
#include <fcntl.h>
#include <optional>

namespace platform {

namespace {

std::error_code errorOf(std::errc error) {
    return std::make_error_code(error);
}

std::size_t lengthOfFolder(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? 0 : slash + 1;
}

// Replaces a path by the one that it leads to, link by link; the last one need not exist.
std::error_code followLinks(std::string& path) {
    constexpr int limit = 40; // as the system's own
    for (int links = 0; links < limit; ++links) {
        char bytes[PATH_MAX];
        const ssize_t length = FileSystemCalls::current().readLink(path.c_str(), bytes, sizeof bytes);
        if (length < 0 && (errno == EINVAL || errno == ENOENT)) // no link, or nothing yet
            return {};
        if (length < 0)
            return lastError();
        const std::string_view destination(bytes, static_cast<std::size_t>(length));
        path.erase(destination.substr(0, 1) == "/" ? 0 : lengthOfFolder(path));
        path.append(destination);
    }
    return errorOf(std::errc::too_many_symbolic_link_levels);
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

// A file that keeps nobody out while it is new follows the umask; one that replaces another is closed to
// others until it has that one's mode.
std::error_code writeBeside(TemporaryFile& file, const std::optional<struct stat>& old,
                            std::string_view bytes) {
    if (const auto error = file.make(old ? 0600 : 0666))
        return error;
    if (const auto error = file.write(bytes))
        return error;
    if (old)
        if (const auto error = file.setOwnerAndMode(old->st_uid, old->st_gid, old->st_mode & 07777))
            return error;
    return file.syncAndClose();
}

// Some file systems have no fsync for folders and say so.
std::error_code syncFolder(int folder) {
    if (retryInterrupted([&] { return FileSystemCalls::current().sync(folder); }) == 0 || errno == EINVAL)
        return {};
    return lastError();
}

std::error_code replaceIn(int folder, const std::string& name, std::string_view bytes) {
    std::optional<struct stat> old;
    if (const auto error = inspect(folder, name, old))
        return error;
    TemporaryFile file(folder);
    if (const auto error = writeBeside(file, old, bytes))
        return error;
    if (const auto error = file.takePlaceOf(name))
        return error;
    return syncFolder(folder);
}

} // namespace

std::error_code replaceFile(const std::string& path, std::string_view bytes) {
    if (path.empty() || holdsNul(path))
        return errorOf(std::errc::invalid_argument);
    std::string target = path;
    if (const auto error = followLinks(target))
        return error;
    const std::size_t split = lengthOfFolder(target);
    const std::string folderPath = split == 0 ? "." : target.substr(0, split);
    const std::string name = target.substr(split);
    if (name.empty())
        return errorOf(std::errc::is_a_directory);
    // Held open, so that all steps happen in the same folder even where it is moved meanwhile.
    const OpenFile folder(retryInterrupted([&] {
        return FileSystemCalls::current().open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }));
    if (!folder.isOpen())
        return lastError();
    return replaceIn(folder.number(), name, bytes);
}

} // namespace platform

#include "platform/storage/FilePlace.h"

#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/StorageError.h"

#include <climits>
#include <fcntl.h>

namespace platform {

namespace {

std::size_t lengthOfFolder(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? 0 : slash + 1;
}

// Replaces a path by the one that its links lead to, which need not exist.
std::error_code followLinks(std::string& path) {
    constexpr int limit = 40; // that of the kernel
    for (int links = 0; links < limit; ++links) {
        char bytes[PATH_MAX];
        const ssize_t length = FileSystemCalls::current().readLink(path.c_str(), bytes, sizeof bytes);
        if (length < 0 && (errno == EINVAL || errno == ENOENT)) // no link, or no file
            return {};
        if (length < 0)
            return lastError();
        const std::string_view destination(bytes, static_cast<std::size_t>(length));
        path.erase(destination.substr(0, 1) == "/" ? 0 : lengthOfFolder(path));
        path.append(destination);
    }
    return make_error_code(std::errc::too_many_symbolic_link_levels);
}

} // namespace

int renameToFreeName(int folder, const std::string& from, const std::string& to) {
    FileSystemCalls& calls = FileSystemCalls::current();
    if (calls.renameToFree(folder, from.c_str(), to.c_str()) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return -1;
    if (calls.link(folder, from.c_str(), to.c_str()) != 0)
        return -1;
    struct stat old {};
    struct stat renamed {};
    if (calls.statusAt(folder, from.c_str(), &old) != 0)
        return errno == ENOENT ? 0 : -1;
    if (calls.statusAt(folder, to.c_str(), &renamed) != 0)
        return -1;
    const bool isStillThisFile = old.st_dev == renamed.st_dev && old.st_ino == renamed.st_ino;
    return isStillThisFile ? calls.unlink(folder, from.c_str()) : 0;
}

std::error_code FilePlace::inspect(const std::string& name, std::optional<ExistingFile>& file) const {
    file.reset();
    FileSystemCalls& calls = FileSystemCalls::current();
    // The handle first: whatever happens to the name, it and the status are of one file.
    auto handle = std::make_shared<OpenFile>(
        retryInterrupted([&] { return calls.openHandle(folder(), name.c_str()); }));
    struct stat status {};
    const int result = handle->isOpen() ? calls.statusOf(handle->number(), &status)
                                        : calls.statusAt(folder(), name.c_str(), &status);
    if (result != 0)
        return errno == ENOENT ? std::error_code{} : lastError();
    if (S_ISDIR(status.st_mode))
        return std::make_error_code(std::errc::is_a_directory);
    if (!S_ISREG(status.st_mode))
        return std::make_error_code(std::errc::invalid_argument);
    file = ExistingFile{name, status, std::move(handle)};
    return {};
}

std::error_code FilePlace::find(const std::string& path) {
    if (path.empty() || holdsNul(path))
        return make_error_code(std::errc::invalid_argument);
    std::string target = path;
    if (const auto error = followLinks(target))
        return error;
    const std::size_t split = lengthOfFolder(target);
    folderPath_ = split == 0 ? "." : target.substr(0, split);
    name_ = target.substr(split);
    if (name_.empty())
        return make_error_code(std::errc::is_a_directory);
    folder_.emplace(retryInterrupted([&] {
        return FileSystemCalls::current().open(folderPath_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }));
    return folder_->isOpen() ? std::error_code{} : lastError();
}

// EINVAL means that the file system does not support fsync for folders.
std::error_code FilePlace::syncFolder() const {
    if (retryInterrupted([&] { return FileSystemCalls::current().sync(folder()); }) == 0 || errno == EINVAL)
        return {};
    return unsynced(lastError());
}

} // namespace platform

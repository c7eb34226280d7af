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

std::error_code FilePlace::inspect(const std::string& name, std::optional<ExistingFile>& file) const {
    file.reset();
    struct stat status {};
    if (FileSystemCalls::current().statusAt(folder(), name.c_str(), &status) != 0)
        return errno == ENOENT ? std::error_code{} : lastError();
    if (S_ISDIR(status.st_mode))
        return std::make_error_code(std::errc::is_a_directory);
    if (!S_ISREG(status.st_mode))
        return std::make_error_code(std::errc::invalid_argument);
    file = ExistingFile{name, status};
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

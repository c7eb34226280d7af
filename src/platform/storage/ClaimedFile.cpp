#include "platform/storage/ClaimedFile.h"

#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/StorageError.h"
#include "platform/storage/TemporaryFile.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>

namespace platform {

std::error_code ClaimedFile::find(const std::string& path) {
    return place_.find(path);
}

std::string ClaimedFile::path() const {
    return pathByAppending(place_.folderPath(), claimedName());
}

std::error_code ClaimedFile::claim() {
    if (renameToFreeName(place_.folder(), place_.name(), claimedName()) != 0)
        return lastError();
    return place_.syncFolder();
}

std::error_code ClaimedFile::resume() {
    for (;;) {
        file_.reset();
        file_ = std::make_unique<OpenFile>(retryInterrupted([&] {
            return FileSystemCalls::current().openAt(place_.folder(), claimedName().c_str(),
                                                     O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0);
        }));
        if (!file_->isOpen())
            return lastError();
        if (const auto error = lockFile(file_->number()))
            return error;
        // Whoever held the lock before may have ended that claim, and there may be another one by now.
        const std::error_code error = findOwnFile();
        if (error != std::errc::no_such_file_or_directory)
            return error;
    }
}

std::error_code ClaimedFile::findOwnFile() const {
    FileSystemCalls& calls = FileSystemCalls::current();
    struct stat named {};
    struct stat own {};
    if (calls.statusAt(place_.folder(), claimedName().c_str(), &named) != 0 ||
        calls.statusOf(file_->number(), &own) != 0)
        return lastError();
    const bool isOwn = named.st_dev == own.st_dev && named.st_ino == own.st_ino;
    return isOwn ? std::error_code{} : make_error_code(std::errc::no_such_file_or_directory);
}

std::optional<std::string> ClaimedFile::read(std::error_code* error) const {
    return readFile("/proc/self/fd/" + std::to_string(file_->number()), error);
}

std::error_code ClaimedFile::makeReplacement(std::string_view bytes) const {
    if (const auto error = findOwnFile())
        return error;
    std::optional<ExistingFile> old;
    if (const auto error = place_.inspect(claimedName(), old))
        return error;
    if (!old)
        return make_error_code(std::errc::no_such_file_or_directory);
    TemporaryFile file(place_.folder());
    if (const auto error = file.write(old, bytes))
        return error;
    return file.takeFreeName(place_.name());
}

std::error_code ClaimedFile::replace(std::string_view bytes) {
    if (const auto error = makeReplacement(bytes))
        return error;
    if (FileSystemCalls::current().unlink(place_.folder(), claimedName().c_str()) != 0)
        return lastError();
    return place_.syncFolder();
}

std::error_code ClaimedFile::replaceAndKeep(std::string_view bytes, std::string_view ending,
                                            std::string& kept) {
    if (const auto error = makeReplacement(bytes))
        return error;
    const std::string name = std::string(place_.name()).append(ending);
    std::string free = name;
    for (int number = 2; renameToFreeName(place_.folder(), claimedName(), free) != 0; ++number) {
        if (errno != EEXIST)
            return lastError();
        free = name + '-' + std::to_string(number);
    }
    kept = pathByAppending(place_.folderPath(), free);
    return place_.syncFolder();
}

} // namespace platform

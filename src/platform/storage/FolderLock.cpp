#include "platform/storage/FolderLock.h"

#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/StorageError.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace platform {

namespace {

FolderLock::Policy policy = FolderLock::optional;

// Whether an error of flock refuses the lock, rather than saying that the file system has none. NFS says
// EBADF of a folder, which cannot be opened for writing.
bool offersLocks(int error) {
    return error != ENOLCK && error != EOPNOTSUPP && error != ENOSYS && error != EINVAL && error != EBADF;
}

} // namespace

void FolderLock::setPolicy(const Policy& chosen) {
    policy = chosen;
}

// flock itself knows no longest wait, and a timer's signal would be the whole process's.
std::error_code lockFile(int file) {
    constexpr std::chrono::milliseconds pause(5);
    FileSystemCalls& calls = FileSystemCalls::current();
    for (auto left = policy.longestWait;; left -= pause) {
        if (retryInterrupted([&] { return calls.lock(file, LOCK_EX | LOCK_NB); }) == 0)
            return {};
        if (errno != EWOULDBLOCK)
            return offersLocks(errno) ? lastError() : std::error_code{};
        if (left <= pause.zero())
            return StorageError::LockHeld;
        calls.pause(pause);
    }
}

FolderLock::FolderLock(const std::string& folder) {
    if (holdsNul(folder))
        return;
    folder_.emplace(retryInterrupted(
        [&] { return FileSystemCalls::current().open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    std::error_code error;
    if (folder_->isOpen())
        error = lockFile(folder_->number());
    else if (errno != ENOENT && errno != ENOTDIR)
        error = lastError();
    if (policy.isRequired)
        error_ = error;
}

} // namespace platform

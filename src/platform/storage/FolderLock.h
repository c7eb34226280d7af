#pragma once

#include "platform/storage/OpenFile.h"

#include <chrono>
#include <optional>
#include <string>
#include <system_error>

namespace platform {

// An advisory lock (flock) on a folder, under which this project's programs take turns when each reads,
// changes and replaces a file of that folder. It is a courtesy: a program that does not take part is not held
// up, and no file is whole only because of it. The lock makes no file and ends with this object or with the
// process; it is not inherited by programs that the process starts. A process must not take it twice.
class FolderLock final {
public:
    // What a program does about a lock that it does not get.
    struct Policy {
        std::chrono::milliseconds longestWait;
        bool isRequired; // false: error() is never set
    };
    // That of a program which goes on without the lock before its user notices that it waits; the default.
    static constexpr Policy optional{std::chrono::milliseconds(200), false};
    // That of a program which rather fails than has another's change undone.
    static constexpr Policy required{std::chrono::milliseconds(5000), true};

    // Sets the policy of the process, which lockFile follows too.
    static void setPolicy(const Policy& policy);

    // Takes the lock, or goes on without it: where the folder does not exist, where the file system offers no
    // locks, and, if it is not required, also where others have held it for the longest wait or the folder
    // may not be opened.
    explicit FolderLock(const std::string& folder);
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    // Why the program must not go on: StorageError::LockHeld, or the error of a system call.
    [[nodiscard]] const std::error_code& error() const { return error_; }

private:
    std::optional<OpenFile> folder_;
    std::error_code error_;
};

// Takes a lock of an open file, waiting at most as long as the policy says. StorageError::LockHeld if another
// program holds it all that time. No error where the file system offers no locks.
[[nodiscard]] std::error_code lockFile(int file);

} // namespace platform

#include "platform/storage/TemporaryFile.h"

#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/OpenFile.h"

#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/random.h>
#include <utility>

namespace platform {

namespace {

// The name does not contain the target's name, which may already be as long as a file name can be.
std::string unpredictableName() {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != static_cast<ssize_t>(sizeof number))
        return {};
    char name[32];
    std::snprintf(name, sizeof name, ".new-%016llx", static_cast<unsigned long long>(number));
    return name;
}

} // namespace

TemporaryFile::~TemporaryFile() {
    (void)close();
    if (!name_.empty())
        FileSystemCalls::current().unlink(folder_, name_.c_str());
}

int TemporaryFile::close() {
    const int file = std::exchange(file_, -1);
    return file < 0 ? 0 : FileSystemCalls::current().close(file);
}

std::error_code TemporaryFile::write(const std::optional<struct stat>& old, std::string_view bytes) {
    if (const auto error = make(old))
        return error;
    if (const auto error = writeAll(bytes))
        return error;
    if (old)
        if (const auto error = setOwnerAndMode(*old))
            return error;
    // This is none of the replaceable calls: it does not fail for an open file.
    struct stat written {};
    if (fstat(file_, &written) == 0)
        version_ = FileVersion::of(written);
    return syncAndClose();
}

std::error_code TemporaryFile::make(const std::optional<struct stat>& old) {
    const mode_t mode = old ? 0600 : 0666; // less the bits of the umask
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    constexpr int attempts = 16;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const std::string name = unpredictableName();
        if (name.empty())
            return lastError();
        file_ = retryInterrupted(
            [&] { return FileSystemCalls::current().openAt(folder_, name.c_str(), flags, mode); });
        if (file_ >= 0) {
            name_ = name;
            return {};
        }
        if (errno != EEXIST)
            break;
    }
    return lastError();
}

std::error_code TemporaryFile::writeAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = retryInterrupted(
            [&] { return FileSystemCalls::current().write(file_, bytes.data(), bytes.size()); });
        if (count < 0)
            return lastError();
        if (count == 0)
            return std::make_error_code(std::errc::io_error);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

std::error_code TemporaryFile::setOwnerAndMode(const struct stat& old) {
    FileSystemCalls& calls = FileSystemCalls::current();
    constexpr auto unchanged = static_cast<uid_t>(-1);
    if (calls.changeOwner(file_, old.st_uid, old.st_gid) != 0)
        (void)calls.changeOwner(file_, unchanged, old.st_gid); // only root may change the owner
    if (calls.changeMode(file_, old.st_mode & 07777) != 0)
        return lastError();
    return {};
}

std::error_code TemporaryFile::syncAndClose() {
    if (retryInterrupted([&] { return FileSystemCalls::current().sync(file_); }) != 0)
        return lastError();
    // A close that is interrupted has closed the file, whose bytes were synced before.
    if (close() != 0 && errno != EINTR)
        return lastError();
    return {};
}

std::error_code TemporaryFile::takePlaceOf(const std::string& name) {
    if (FileSystemCalls::current().rename(folder_, name_.c_str(), name.c_str()) != 0)
        return lastError();
    name_.clear();
    return {};
}

std::error_code TemporaryFile::takeFreeName(const std::string& name) {
    FileSystemCalls& calls = FileSystemCalls::current();
    if (calls.link(folder_, name_.c_str(), name.c_str()) != 0 && errno != EEXIST)
        return lastError();
    calls.unlink(folder_, std::exchange(name_, {}).c_str());
    return {};
}

} // namespace platform

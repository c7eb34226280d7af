#include "platform/storage/TemporaryFile.h"

#include "platform/storage/FileAccess.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/OpenFile.h"
#include "platform/system/Clock.h"

#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr std::string_view prefix = ".korvel-";

// The name does not contain the target's name, which may already be as long as a file name can be.
std::string unpredictableName() {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != static_cast<ssize_t>(sizeof number))
        return {};
    char name[32];
    std::snprintf(name, sizeof name, "%s%016llx", prefix.data(), static_cast<unsigned long long>(number));
    return name;
}

bool isOurs(const std::string& name) {
    constexpr std::size_t digits = 16;
    return name.starts_with(prefix) && name.size() == prefix.size() + digits &&
           name.find_first_not_of("0123456789abcdef", prefix.size()) == std::string::npos;
}

// Whether no process writes the file and none has for an hour, in which a writer has renamed it long ago.
bool isAbandoned(int folder, const std::string& name) {
    constexpr double longAgo = 3600; // seconds
    FileSystemCalls& calls = FileSystemCalls::current();
    struct stat status {};
    if (calls.statusAt(folder, name.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
        Clock::current().now() - static_cast<double>(status.st_mtim.tv_sec) < longAgo)
        return false;
    const OpenFile file(
        calls.openAt(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0));
    return file.isOpen() && calls.lock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

} // namespace

TemporaryFile::TemporaryFile(int folder)
    : folder_(folder) {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&ending, signal);
    pthread_sigmask(SIG_BLOCK, &ending, &signalsBefore_);
}

TemporaryFile::~TemporaryFile() {
    (void)close();
    if (!name_.empty())
        FileSystemCalls::current().unlink(folder_, name_.c_str());
    pthread_sigmask(SIG_SETMASK, &signalsBefore_, nullptr);
}

int TemporaryFile::close() {
    const int file = std::exchange(file_, -1);
    return file < 0 ? 0 : FileSystemCalls::current().close(file);
}

std::error_code TemporaryFile::write(const std::optional<ExistingFile>& old, std::string_view bytes) {
    removeAbandoned();
    if (const auto error = make(old ? 0600 : 0666)) // less the bits of the umask
        return error;
    if (const auto error = writeAll(bytes))
        return error;
    if (old && carryAccessOver(*old, file_) != 0)
        return lastError();
    // This is none of the replaceable calls: it does not fail for an open file.
    struct stat written {};
    if (fstat(file_, &written) == 0)
        version_ = FileVersion::of(written);
    return syncAndClose();
}

// What cannot be looked at or removed is left to another writer.
void TemporaryFile::removeAbandoned() const {
    FileSystemCalls& calls = FileSystemCalls::current();
    std::vector<std::string> names;
    if (calls.names(folder_, names) != 0)
        return;
    for (const std::string& name : names)
        if (isOurs(name) && isAbandoned(folder_, name))
            calls.unlink(folder_, name.c_str());
}

std::error_code TemporaryFile::make(mode_t mode) {
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
            (void)FileSystemCalls::current().lock(file_, LOCK_EX | LOCK_NB); // nobody else knows the file yet
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
    if (renameToFreeName(folder_, name_, name) == 0)
        name_.clear();
    else if (errno != EEXIST) // the destructor removes the file
        return lastError();
    return {};
}

} // namespace platform

#include "platform/storage/FileSystemCalls.h"

#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace platform {

namespace {

FileSystemCalls* chosenCalls = nullptr;

} // namespace

FileSystemCalls& FileSystemCalls::current() {
    static FileSystemCalls systemCalls;
    return chosenCalls ? *chosenCalls : systemCalls;
}

void FileSystemCalls::setCurrent(FileSystemCalls* calls) {
    chosenCalls = calls;
}

int FileSystemCalls::open(const char* path, int flags) {
    return ::open(path, flags);
}

int FileSystemCalls::openAt(int folder, const char* name, int flags, mode_t mode) {
    return ::openat(folder, name, flags, mode);
}

int FileSystemCalls::openHandle(int folder, const char* name) {
    return ::openat(folder, name, O_PATH | O_NOFOLLOW | O_CLOEXEC);
}

int FileSystemCalls::close(int file) {
    return ::close(file);
}

ssize_t FileSystemCalls::read(int file, void* bytes, std::size_t count) {
    return ::read(file, bytes, count);
}

ssize_t FileSystemCalls::write(int file, const void* bytes, std::size_t count) {
    return ::write(file, bytes, count);
}

int FileSystemCalls::status(const char* path, struct stat* result) {
    return ::stat(path, result);
}

int FileSystemCalls::statusOf(int file, struct stat* result) {
    return ::fstat(file, result);
}

int FileSystemCalls::statusAt(int folder, const char* name, struct stat* result) {
    return ::fstatat(folder, name, result, AT_SYMLINK_NOFOLLOW);
}

ssize_t FileSystemCalls::readLink(const char* path, char* bytes, std::size_t count) {
    return ::readlink(path, bytes, count);
}

int FileSystemCalls::changeMode(int file, mode_t mode) {
    return ::fchmod(file, mode);
}

int FileSystemCalls::changeOwner(int file, uid_t owner, gid_t group) {
    return ::fchown(file, owner, group);
}

int FileSystemCalls::sync(int file) {
    return ::fsync(file);
}

int FileSystemCalls::rename(int folder, const char* from, const char* to) {
    return ::renameat(folder, from, folder, to);
}

int FileSystemCalls::renameToFree(int folder, const char* from, const char* to) {
    return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE);
}

int FileSystemCalls::link(int folder, const char* from, const char* to) {
    return ::linkat(folder, from, folder, to, 0);
}

int FileSystemCalls::unlink(int folder, const char* name) {
    return ::unlinkat(folder, name, 0);
}

int FileSystemCalls::makeFolder(const char* path) {
    return ::mkdir(path, 0777);
}

int FileSystemCalls::names(int folder, std::vector<std::string>& result) {
    const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (own < 0)
        return -1;
    DIR* const entries = ::fdopendir(own);
    if (!entries) {
        ::close(own);
        return -1;
    }
    errno = 0;
    while (const dirent* entry = ::readdir(entries))
        result.emplace_back(entry->d_name);
    const int error = errno;
    ::closedir(entries);
    errno = error;
    return error == 0 ? 0 : -1;
}

int FileSystemCalls::lock(int file, int operation) {
    return ::flock(file, operation);
}

void FileSystemCalls::pause(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

ssize_t FileSystemCalls::attributeNames(const char* path, char* bytes, std::size_t count) {
    return ::listxattr(path, bytes, count);
}

ssize_t FileSystemCalls::attribute(const char* path, const char* name, void* bytes, std::size_t count) {
    return ::getxattr(path, name, bytes, count);
}

int FileSystemCalls::setAttribute(int file, const char* name, const void* bytes, std::size_t count) {
    return ::fsetxattr(file, name, bytes, count, 0);
}

int FileSystemCalls::removeAttribute(int file, const char* name) {
    return ::fremovexattr(file, name);
}

int FileSystemCalls::makeWatchQueue() {
    return ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
}

int FileSystemCalls::addWatch(int queue, const char* path, std::uint32_t mask) {
    return ::inotify_add_watch(queue, path, mask);
}

int FileSystemCalls::removeWatch(int queue, int watch) {
    return ::inotify_rm_watch(queue, watch);
}

} // namespace platform

#include "platform/storage/FileSystemCalls.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/inotify.h>
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

int FileSystemCalls::link(int folder, const char* from, const char* to) {
    return ::linkat(folder, from, folder, to, 0);
}

int FileSystemCalls::unlink(int folder, const char* name) {
    return ::unlinkat(folder, name, 0);
}

int FileSystemCalls::makeFolder(const char* path) {
    return ::mkdir(path, 0777);
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

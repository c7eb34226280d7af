#include "FailingCalls.h"

#include <algorithm>
#include <cerrno>

bool FailingCalls::fails(const char* name) {
    const std::size_t number = made_.size();
    made_.emplace_back(name);
    if (failsByName(name))
        return true;
    if (const auto found = failures_.find(number); found != failures_.end())
        return errno = found->second, true;
    return false;
}

bool FailingCalls::failsByName(const char* name) {
    const auto found = namedFailures_.find(name);
    return found != namedFailures_.end() && (errno = found->second, true);
}

int FailingCalls::open(const char* path, int flags) {
    return fails("open") ? -1 : FileSystemCalls::open(path, flags);
}

int FailingCalls::openAt(int folder, const char* name, int flags, mode_t mode) {
    return fails("openAt") ? -1 : FileSystemCalls::openAt(folder, name, flags, mode);
}

// A close that fails has still closed the file.
int FailingCalls::close(int file) {
    const bool isFailing = fails("close");
    const int error = errno;
    const int result = FileSystemCalls::close(file);
    if (!isFailing)
        return result;
    errno = error;
    return -1;
}

ssize_t FailingCalls::read(int file, void* bytes, std::size_t count) {
    return fails("read") ? -1 : FileSystemCalls::read(file, bytes, std::min(count, most_));
}

ssize_t FailingCalls::write(int file, const void* bytes, std::size_t count) {
    return fails("write") ? -1 : FileSystemCalls::write(file, bytes, std::min(count, most_));
}

int FailingCalls::status(const char* path, struct stat* result) {
    return fails("status") ? -1 : FileSystemCalls::status(path, result);
}

int FailingCalls::statusOf(int file, struct stat* result) {
    return fails("statusOf") ? -1 : FileSystemCalls::statusOf(file, result);
}

int FailingCalls::statusAt(int folder, const char* name, struct stat* result) {
    return fails("statusAt") ? -1 : FileSystemCalls::statusAt(folder, name, result);
}

ssize_t FailingCalls::readLink(const char* path, char* bytes, std::size_t count) {
    return fails("readLink") ? -1 : FileSystemCalls::readLink(path, bytes, count);
}

int FailingCalls::changeMode(int file, mode_t mode) {
    return fails("changeMode") ? -1 : FileSystemCalls::changeMode(file, mode);
}

int FailingCalls::changeOwner(int file, uid_t owner, gid_t group) {
    return fails("changeOwner") ? -1 : FileSystemCalls::changeOwner(file, owner, group);
}

int FailingCalls::sync(int file) {
    return fails("sync") ? -1 : FileSystemCalls::sync(file);
}

int FailingCalls::rename(int folder, const char* from, const char* to) {
    return fails("rename") ? -1 : FileSystemCalls::rename(folder, from, to);
}

int FailingCalls::link(int folder, const char* from, const char* to) {
    return fails("link") ? -1 : FileSystemCalls::link(folder, from, to);
}

int FailingCalls::unlink(int folder, const char* name) {
    return fails("unlink") ? -1 : FileSystemCalls::unlink(folder, name);
}

int FailingCalls::makeFolder(const char* path) {
    return fails("makeFolder") ? -1 : FileSystemCalls::makeFolder(path);
}

int FailingCalls::renameToFree(int folder, const char* from, const char* to) {
    return fails("renameToFree") ? -1 : FileSystemCalls::renameToFree(folder, from, to);
}

int FailingCalls::openHandle(int folder, const char* name) {
    return failsByName("openHandle") ? -1 : FileSystemCalls::openHandle(folder, name);
}

int FailingCalls::names(int folder, std::vector<std::string>& result) {
    return failsByName("names") ? -1 : FileSystemCalls::names(folder, result);
}

int FailingCalls::lock(int file, int operation) {
    return failsByName("lock") ? -1 : FileSystemCalls::lock(file, operation);
}

ssize_t FailingCalls::attributeNames(const char* path, char* bytes, std::size_t count) {
    return failsByName("attributeNames") ? -1 : FileSystemCalls::attributeNames(path, bytes, count);
}

int FailingCalls::setAttribute(int file, const char* name, const void* bytes, std::size_t count) {
    return failsByName("setAttribute") ? -1 : FileSystemCalls::setAttribute(file, name, bytes, count);
}

int FailingCalls::removeAttribute(int file, const char* name) {
    return failsByName("removeAttribute") ? -1 : FileSystemCalls::removeAttribute(file, name);
}

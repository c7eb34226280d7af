#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <vector>

namespace platform {

// The system calls of this folder's code. Each returns -1 and sets errno on failure. Tests replace them to
// make a step fail.
class FileSystemCalls {
public:
    virtual ~FileSystemCalls() = default;

    virtual int open(const char* path, int flags);
    virtual int openAt(int folder, const char* name, int flags, mode_t mode);
    virtual int openHandle(int folder, const char* name); // O_PATH; a link's is its own
    virtual int close(int file);
    virtual ssize_t read(int file, void* bytes, std::size_t count);
    virtual ssize_t write(int file, const void* bytes, std::size_t count);
    virtual int status(const char* path, struct stat* result);
    virtual int statusOf(int file, struct stat* result);
    virtual int statusAt(int folder, const char* name, struct stat* result); // does not follow a link
    virtual ssize_t readLink(const char* path, char* bytes, std::size_t count);
    virtual int changeMode(int file, mode_t mode);
    virtual int changeOwner(int file, uid_t owner, gid_t group);
    virtual int sync(int file);
    virtual int rename(int folder, const char* from, const char* to);
    virtual int renameToFree(int folder, const char* from, const char* to); // EEXIST where the name is taken
    virtual int link(int folder, const char* from, const char* to);
    virtual int unlink(int folder, const char* name);
    virtual int makeFolder(const char* path);
    virtual int names(int folder, std::vector<std::string>& result); // of the entries, "." and ".." too
    virtual int lock(int file, int operation);                       // flock
    virtual void pause(std::chrono::milliseconds duration);
    // Extended attributes: those of what a path leads to, and of an open file.
    virtual ssize_t attributeNames(const char* path, char* bytes, std::size_t count);
    virtual ssize_t attribute(const char* path, const char* name, void* bytes, std::size_t count);
    virtual int setAttribute(int file, const char* name, const void* bytes, std::size_t count);
    virtual int removeAttribute(int file, const char* name);
    virtual int makeWatchQueue(); // of inotify, whose reads do not wait
    virtual int addWatch(int queue, const char* path, std::uint32_t mask);
    virtual int removeWatch(int queue, int watch);

    [[nodiscard]] static FileSystemCalls& current();

    // Replaces the calls by others that outlive their use; nullptr restores those of the system.
    static void setCurrent(FileSystemCalls* calls);
};

} // namespace platform

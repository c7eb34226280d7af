#pragma once

#include "platform/storage/FileSystemCalls.h"

#include <map>
#include <string>
#include <vector>

// The system calls, some of which fail as told, for as long as this object lives. The calls that change files
// or read them are numbered from 0. Nothing pauses: the pauses are counted.
class FailingCalls : public platform::FileSystemCalls {
public:
    FailingCalls() { setCurrent(this); }
    ~FailingCalls() override { setCurrent(nullptr); }
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    void failAt(std::size_t call, int error) { failures_[call] = error; }
    // Makes every call of a name fail.
    void failAll(const std::string& name, int error) { namedFailures_[name] = error; }
    // Limits the bytes of each read and write.
    void moveAtMost(std::size_t count) { most_ = count; }

    // The names of the calls in their order.
    [[nodiscard]] const std::vector<std::string>& made() const { return made_; }

    int open(const char* path, int flags) override;
    int openAt(int folder, const char* name, int flags, mode_t mode) override;
    int close(int file) override;
    ssize_t read(int file, void* bytes, std::size_t count) override;
    ssize_t write(int file, const void* bytes, std::size_t count) override;
    int status(const char* path, struct stat* result) override;
    int statusOf(int file, struct stat* result) override;
    int statusAt(int folder, const char* name, struct stat* result) override;
    ssize_t readLink(const char* path, char* bytes, std::size_t count) override;
    int changeMode(int file, mode_t mode) override;
    int changeOwner(int file, uid_t owner, gid_t group) override;
    int sync(int file) override;
    int rename(int folder, const char* from, const char* to) override;
    int link(int folder, const char* from, const char* to) override;
    int unlink(int folder, const char* name) override;
    int makeFolder(const char* path) override;
    int renameToFree(int folder, const char* from, const char* to) override;

    // These are not numbered, and fail only by their names.
    int openHandle(int folder, const char* name) override;
    int names(int folder, std::vector<std::string>& result) override;
    int lock(int file, int operation) override;
    void pause(std::chrono::milliseconds duration) override { paused_ += duration; }
    ssize_t attributeNames(const char* path, char* bytes, std::size_t count) override;
    int setAttribute(int file, const char* name, const void* bytes, std::size_t count) override;
    int removeAttribute(int file, const char* name) override;

    [[nodiscard]] std::chrono::milliseconds paused() const { return paused_; }

private:
    bool fails(const char* name);
    bool failsByName(const char* name);

    std::map<std::size_t, int> failures_;
    std::map<std::string, int> namedFailures_;
    std::vector<std::string> made_;
    std::chrono::milliseconds paused_{0};
    std::size_t most_ = static_cast<std::size_t>(-1);
};

#include "platform/storage/Files.h"

#include "platform/storage/FilePlace.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/OpenFile.h"
#include "platform/storage/OwnReplacements.h"
#include "platform/storage/StorageError.h"
#include "platform/storage/TemporaryFile.h"

#include <algorithm>
#include <fcntl.h>
#include <new>

namespace platform {

namespace {

// Far more than any feed has. A longer file is refused, so that it does not use up all memory.
constexpr std::size_t largestFile = std::size_t{1} << 30;

// Reads to the end of the file, even if the file changes its length meanwhile. A string fills the bytes that
// it gains with zeros, so it grows by pieces that stay in the processor's cache.
std::error_code readAll(int file, std::size_t expected, std::string& bytes) {
    constexpr std::size_t piece = 128 * 1024;
    bytes.reserve(expected + 1); // one more byte for the read that finds the end
    for (;;) {
        const std::size_t length = bytes.size();
        const std::size_t room = bytes.capacity() - length;
        bytes.resize(length + (room == 0 ? piece : std::min(room, piece)));
        const ssize_t count = retryInterrupted([&] {
            return FileSystemCalls::current().read(file, bytes.data() + length, bytes.size() - length);
        });
        bytes.resize(length + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count < 0)
            return lastError();
        if (count == 0)
            return {};
        if (bytes.size() > largestFile)
            return make_error_code(std::errc::file_too_large);
    }
}

std::error_code readRegularFile(const std::string& path, std::string& bytes) {
    if (holdsNul(path))
        return make_error_code(std::errc::invalid_argument);
    FileSystemCalls& calls = FileSystemCalls::current();
    // Without O_NONBLOCK, opening a FIFO would wait for a writer.
    const OpenFile file(retryInterrupted(
        [&] { return calls.open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
    if (!file.isOpen())
        return lastError();
    struct stat status {};
    if (calls.statusOf(file.number(), &status) != 0)
        return lastError();
    if (S_ISDIR(status.st_mode))
        return make_error_code(std::errc::is_a_directory);
    if (!S_ISREG(status.st_mode))
        return make_error_code(std::errc::invalid_argument);
    if (status.st_size > static_cast<off_t>(largestFile))
        return make_error_code(std::errc::file_too_large);
    try {
        return readAll(file.number(), static_cast<std::size_t>(status.st_size), bytes);
    } catch (const std::bad_alloc&) {
        return make_error_code(std::errc::not_enough_memory);
    }
}

// The parent of a path: "/a" for "/a/b" and "/a/b/". Empty for a single name.
std::string parentOf(const std::string& path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string::npos)
        return {};
    const std::size_t slash = path.rfind('/', last);
    if (slash == std::string::npos)
        return {};
    const std::size_t end = path.find_last_not_of('/', slash);
    return end == std::string::npos ? "/" : path.substr(0, end + 1);
}

// Makes one folder in an existing one and syncs that. EEXIST is an error.
std::error_code makeFolder(const std::string& path, const std::string& parent) {
    FileSystemCalls& calls = FileSystemCalls::current();
    if (calls.makeFolder(path.c_str()) != 0)
        return lastError();
    const OpenFile above(retryInterrupted([&] {
        return calls.open(parent.empty() ? "." : parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }));
    // EINVAL means that the file system does not support fsync for folders.
    if (above.isOpen() &&
        (retryInterrupted([&] { return calls.sync(above.number()); }) == 0 || errno == EINVAL))
        return {};
    return unsynced(lastError());
}

} // namespace

std::optional<std::string> readFile(const std::string& path, std::error_code* error) {
    std::string bytes;
    const std::error_code result = readRegularFile(path, bytes);
    if (error)
        *error = result;
    if (result)
        return std::nullopt;
    return bytes;
}

std::error_code replaceFile(const std::string& path, std::string_view bytes) {
    FilePlace place;
    std::optional<ExistingFile> old;
    if (const auto error = place.find(path))
        return error;
    if (const auto error = place.inspect(place.name(), old))
        return error;
    TemporaryFile file(place.folder());
    if (const auto error = file.write(old, bytes))
        return error;
    if (const auto error = file.takePlaceOf(place.name()))
        return error;
    OwnReplacements::note(old ? FileVersion::of(old->status) : FileVersion(), file.version());
    return place.syncFolder();
}

std::error_code makeFolders(const std::string& path) {
    if (path.empty() || holdsNul(path))
        return make_error_code(std::errc::invalid_argument);
    if (isFolder(path))
        return {};
    const std::string parent = parentOf(path);
    std::error_code error = makeFolder(path, parent);
    if (error == std::errc::no_such_file_or_directory && !isMade(error) && !parent.empty()) {
        const std::error_code above = makeFolders(parent);
        if (!isMade(above))
            return above;
        error = worseOf(makeFolder(path, parent), above);
    }
    // Another program may have made the folder in the meantime.
    if (error == std::errc::file_exists && !isMade(error))
        return isFolder(path) ? std::error_code{} : make_error_code(std::errc::not_a_directory);
    return error;
}

bool fileExists(const std::string& path) {
    struct stat status {};
    return !holdsNul(path) && FileSystemCalls::current().status(path.c_str(), &status) == 0;
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return !holdsNul(path) && FileSystemCalls::current().status(path.c_str(), &status) == 0 &&
           S_ISDIR(status.st_mode);
}

std::string pathByAppending(const std::string& folder, std::string_view component) {
    component.remove_prefix(std::min(component.find_first_not_of('/'), component.size()));
    if (folder.empty())
        return std::string(component);
    const std::size_t end = folder.find_last_not_of('/');
    std::string path = folder.substr(0, end == std::string::npos ? 0 : end + 1);
    if (path.empty() || !component.empty())
        path += '/';
    return path.append(component);
}

} // namespace platform

#pragma once

#include "platform/storage/FilePlace.h"
#include "platform/storage/FileVersion.h"

#include <csignal>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <system_error>

namespace platform {

// A new file in an open folder with a random name. This object removes the file unless it was renamed.
// SIGTERM, SIGINT and SIGHUP wait until then on this thread, so that none of them leaves the file. What a
// process leaves that is ended in another way is removed by the next writer: the writer of a file holds its
// lock (flock), and a file of this kind that nobody holds and that is an hour old is abandoned.
class TemporaryFile final {
public:
    explicit TemporaryFile(int folder);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Removes abandoned files, makes the file, writes the bytes, syncs it and closes it. Its mode follows the
    // umask if there is no old file. Otherwise only the owner may open it until it has what carryAccessOver
    // gives it.
    [[nodiscard]] std::error_code write(const std::optional<ExistingFile>& old, std::string_view bytes);

    // The version that write() has made. A new name does not change it.
    [[nodiscard]] const FileVersion& version() const { return version_; }

    // Renames the file and replaces what has that name.
    [[nodiscard]] std::error_code takePlaceOf(const std::string& name);
    // Renames the file unless a file has that name already, which is kept and is not an error.
    [[nodiscard]] std::error_code takeFreeName(const std::string& name);

private:
    void removeAbandoned() const;
    [[nodiscard]] std::error_code make(mode_t mode);
    [[nodiscard]] std::error_code writeAll(std::string_view bytes);
    [[nodiscard]] std::error_code syncAndClose();
    [[nodiscard]] int close();

    int folder_;
    sigset_t signalsBefore_; // those that were blocked
    int file_ = -1;
    FileVersion version_;
    std::string name_; // empty if there is no file to remove
};

} // namespace platform

#pragma once

#include "platform/storage/FileVersion.h"

#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>

namespace platform {

// A new file in an open folder with a random name. This object removes the file unless it was renamed.
class TemporaryFile final {
public:
    explicit TemporaryFile(int folder)
        : folder_(folder) {}
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Makes the file, writes the bytes, syncs it and closes it. Its mode follows the umask if there is no old
    // file. Otherwise it gets the old file's mode, and its owner and group if the process may; until then
    // only the owner may open it.
    [[nodiscard]] std::error_code write(const std::optional<struct stat>& old, std::string_view bytes);

    // The version that write() has made. A new name does not change it.
    [[nodiscard]] const FileVersion& version() const { return version_; }

    // Renames the file and replaces what has that name.
    [[nodiscard]] std::error_code takePlaceOf(const std::string& name);
    // Renames the file unless a file has that name already, which is kept and is not an error.
    [[nodiscard]] std::error_code takeFreeName(const std::string& name);

private:
    [[nodiscard]] std::error_code make(const std::optional<struct stat>& old);
    [[nodiscard]] std::error_code writeAll(std::string_view bytes);
    [[nodiscard]] std::error_code setOwnerAndMode(const struct stat& old);
    [[nodiscard]] std::error_code syncAndClose();
    [[nodiscard]] int close();

    int folder_;
    int file_ = -1;
    FileVersion version_;
    std::string name_; // empty if there is no file to remove
};

} // namespace platform

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>

namespace platform {

// A new file in an open folder, under a name that nobody can guess, removed with this object unless it took
// another's place.
class TemporaryFile final {
public:
    explicit TemporaryFile(int folder)
        : folder_(folder) {}
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Makes it, writes all of it and brings it to the disk. A file that keeps nobody out while it is new
    // follows the umask; one that comes after another is closed to others until it has that one's mode.
    [[nodiscard]] std::error_code writeWhole(const std::optional<struct stat>& old, std::string_view bytes);

    // The single steps. The umask narrows the mode.
    [[nodiscard]] std::error_code make(mode_t mode);
    [[nodiscard]] std::error_code write(std::string_view bytes);
    // The mode as it stands; the owner and the group as far as this process may give them.
    [[nodiscard]] std::error_code setOwnerAndMode(uid_t owner, gid_t group, mode_t mode);
    // The bytes are on the disk after this.
    [[nodiscard]] std::error_code syncAndClose();
    [[nodiscard]] std::error_code takePlaceOf(const std::string& name);
    // Takes a name that is free; what stands there stays, which is no error.
    [[nodiscard]] std::error_code takeFreePlace(const std::string& name);

private:
    [[nodiscard]] int close();

    int folder_;
    int file_ = -1;
    std::string name_; // empty where there is nothing to remove
};

} // namespace platform

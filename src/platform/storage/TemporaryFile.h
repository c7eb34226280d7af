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

    // Makes it. A file that comes after no other follows the umask; one that does is closed to others until
    // it has the old one's mode.
    [[nodiscard]] std::error_code make(const std::optional<struct stat>& old);
    [[nodiscard]] std::error_code write(std::string_view bytes);
    // Gives it the old one's mode, its owner and group as far as this process may, and brings it to the disk.
    [[nodiscard]] std::error_code complete(const std::optional<struct stat>& old);
    // All three.
    [[nodiscard]] std::error_code writeWhole(const std::optional<struct stat>& old, std::string_view bytes);

    [[nodiscard]] std::error_code takePlaceOf(const std::string& name);
    // Takes a name that is free; what stands there stays, which is no error.
    [[nodiscard]] std::error_code takeFreeName(const std::string& name);

private:
    [[nodiscard]] std::error_code setOwnerAndMode(const struct stat& old);
    [[nodiscard]] std::error_code syncAndClose();
    [[nodiscard]] int close();

    int folder_;
    int file_ = -1;
    std::string name_; // empty where there is nothing to remove
};

} // namespace platform

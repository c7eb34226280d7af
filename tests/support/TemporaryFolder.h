#pragma once

#include <string>
#include <string_view>

namespace support {

// A new empty folder, removed with all that is in it at the end.
class TemporaryFolder final {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }

    // Writes a file below the folder, with the folders on the way to it; gives its path.
    std::string write(std::string_view name, std::string_view bytes) const;
    // The bytes of a file below the folder; a failure of the test where it cannot be read.
    [[nodiscard]] std::string read(std::string_view name) const;
    [[nodiscard]] bool has(std::string_view name) const;
    // How many entries a folder below this one has ("" for this one itself).
    [[nodiscard]] std::size_t count(std::string_view name = "") const;

private:
    std::string path_;
};

} // namespace support

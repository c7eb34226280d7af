#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace support {

// A new empty folder, which this object removes with its content. A death test runs in a process of its own
// and dies before it can remove its folders; they are made beside the folder of the waiting test and are
// removed with it.
class TemporaryFolder final {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }

    // Writes a file below the folder, makes the folders in between and returns the path of the file.
    std::string write(std::string_view name, std::string_view bytes) const;
    // The bytes of a file below the folder. A file that cannot be read fails the test.
    [[nodiscard]] std::string read(std::string_view name) const;
    [[nodiscard]] bool has(std::string_view name) const;
    // The number of entries of a folder below this one, or of this one for "".
    [[nodiscard]] std::size_t count(std::string_view name = "") const;

private:
    std::string holder_; // the parent of this folder and of those of dying processes
    std::string path_;
    std::optional<std::string> before_; // the value of the variable that names the holder
};

} // namespace support

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace support {

// A new empty folder, removed with all that is in it at the end. A death test runs in a process of its own
// from the start, and dies before it can remove anything: its folders lie beside the one of the test that
// waits for the death, and go with it.
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
    std::string holder_; // the folder around it, for those of processes that die
    std::string path_;
    std::optional<std::string> before_; // of the environment variable that names the holder
};

} // namespace support

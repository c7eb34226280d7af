#pragma once

#include <cstdint>
#include <string>
#include <sys/stat.h>

namespace platform {

// What tells one version of a file or folder from another without reading it: which file a path leads to, its
// mode, its length and when it was last written. The default is that of a path that leads to no file.
struct FileVersion {
    bool exists = false;
    dev_t device = 0;
    ino_t node = 0;
    mode_t mode = 0;
    off_t size = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;

    bool operator==(const FileVersion&) const = default;

    [[nodiscard]] static FileVersion of(const struct stat& status);
    // The version that a path leads to now. A path that cannot be followed leads to no file.
    [[nodiscard]] static FileVersion at(const std::string& path);
};

} // namespace platform

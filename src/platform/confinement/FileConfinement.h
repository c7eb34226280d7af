#pragma once

#include <string>
#include <system_error>
#include <vector>

namespace platform {

// Files, and folders with everything below them. A path that leads to nothing is left out, as is one to what
// is on no file system, such as an open pipe, which is never forbidden. What is allowed is the file or folder
// that a path leads to at the time of the call: one that takes its place later is not.
struct AllowedFiles {
    std::vector<std::string> readable;
    // Readable as well. In a folder, files may be made, replaced and removed, and folders made.
    std::vector<std::string> writable;
};

// The newest version of the Landlock interface that the kernel has; 0 if it has none or it is not enabled.
// Source: landlock_create_ruleset(2).
[[nodiscard]] int landlockVersion();
// The newest of which anything is used.
inline constexpr int newestUsedLandlockVersion = 6;

// Denies this thread, and each that it starts from now on, all other files, for good: they cannot be
// opened for reading, listed, written, made, renamed or removed, and no file can be executed. Files that are
// open already are not affected, nor is what stat(2) tells.
//
// Also forbidden, as far as the version goes: truncating other files (from 3), TCP (from 4), control calls to
// devices (from 5), signals to others (from 6).
//
// The version is the kernel's or an older one, of 1 at least. Uses no_new_privs, so that no program that is
// started later gains rights.
[[nodiscard]] std::error_code confineFiles(const AllowedFiles& allowed, int version = landlockVersion());

} // namespace platform

#pragma once

#include <optional>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>

// What the user who runs this program may do with files and folders. Nothing is opened for writing.
namespace ctl {

// Where an existing file or folder leads out of another folder, through links and "..": its path without
// them.
[[nodiscard]] std::optional<std::string> placeOutside(const std::string& folder, const std::string& path);

// Why a file of the container cannot be read, in words: the error, and which folder on the way may not be
// searched, or that the file is outside the container.
[[nodiscard]] std::string refusalOf(const std::string& path, const std::error_code& error);

// Why a folder, which need not exist, cannot be made with its parents; nothing if it can be.
[[nodiscard]] std::optional<std::string> refusalToMake(const std::string& folder);

// Why a file, which need not exist, or its folder cannot be written; nothing if they can be.
[[nodiscard]] std::optional<std::string> refusalToReplace(const std::string& path);

// Whether a folder's sticky bit keeps a file in it from being replaced by a user.
[[nodiscard]] bool isKeptFrom(uid_t user, const struct stat& folder, const struct stat& file);

} // namespace ctl

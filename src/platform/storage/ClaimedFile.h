#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

// How one program takes a log away from the programs that append to it without losing a record: it claims the
// file by renaming it, reads it under its new name, and then puts a new file in the old place. While a file
// is claimed, the others find none in its place and make a new one.
//
// Paths are bytes; a symbolic link is followed to the file that it names, and stays. All failures are soft.
namespace platform {

// Renames a file to its claimed name in the same folder and syncs the folder. A file that already has that
// name (an earlier claim that was not finished) is replaced. On failure nothing is renamed, except where only
// the sync fails.
[[nodiscard]] std::error_code claimFile(const std::string& path);

// The path that a file has while it is claimed, whether or not it is claimed now. Absent where the file's
// folder cannot be opened.
[[nodiscard]] std::optional<std::string> claimedPath(const std::string& path);

// Ends a claim. Writes these bytes to a new file at the original path, with the claimed file's owner and
// mode, unless another program has made a file there in the meantime, which is kept; then removes the claimed
// file and syncs the folder. On failure the claimed file is kept, except where only the last sync fails.
[[nodiscard]] std::error_code replaceClaimedFile(const std::string& path, std::string_view bytes);

} // namespace platform

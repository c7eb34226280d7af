#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

// Reading and replacing whole files. Paths are bytes, as for system calls; a path with a NUL byte names no
// file.
namespace platform {

// The bytes of a regular file. Absent if the file does not exist, may not be read, is not a regular file (a
// folder or a FIFO, which does not block), is longer than 1 GiB or cannot be read to its end; `error` is then
// set if it is not null, and cleared otherwise. The file is not memory-mapped, because other programs may
// truncate it at any time.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path, std::error_code* error = nullptr);

// Writes a file, or replaces it as a whole: a reader, and the disk after a crash, has all of the old bytes or
// all of the new ones. The steps are a temporary file in the same folder, fsync, rename and fsync of the
// folder. Who may do what with a replaced file stays (see carryAccessOver); a new file's mode follows the
// umask. A symbolic link is followed, even to a file that does not exist. A folder, FIFO or device is not
// replaced. On failure the old file is unchanged and the temporary file is removed; only if the last fsync
// fails, the new file is in place but may be lost in a crash (see unsynced).
[[nodiscard]] std::error_code replaceFile(const std::string& path, std::string_view bytes);

// Makes a folder and its parents with modes that follow the umask, and syncs the folders that hold those it
// has made; where that fails, they are there but may be lost in a crash (see unsynced). An existing folder is
// not an error.
[[nodiscard]] std::error_code makeFolders(const std::string& path);

// Whether a file of any kind exists at a path, or a folder. Symbolic links are followed.
[[nodiscard]] bool fileExists(const std::string& path);
[[nodiscard]] bool isFolder(const std::string& path);

// Joins two paths by exactly one slash. An absolute component does not replace the folder: ("/a", "b") and
// ("/a/", "/b") are "/a/b". An empty part is left out: ("/a", "") is "/a" and ("", "b") is "b".
[[nodiscard]] std::string pathByAppending(const std::string& folder, std::string_view component);

} // namespace platform

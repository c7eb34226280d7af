#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

// Whole files, read and replaced. Paths are bytes, as the system takes them; a path that holds a NUL byte
// names no file.
namespace platform {

// The bytes of a regular file, read (never mapped: a host may truncate it under us). None where it is absent,
// forbidden, no regular file (a folder, a fifo: opening one must not hang), longer than 1 GiB, or fails on
// the way; `error` then says why where it is given.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path, std::error_code* error = nullptr);

// Replaces or makes a file so that a reader, or a crash at any moment, finds the whole old content or the
// whole new: a temporary file beside the target, every byte written, fsync, rename, fsync of the folder. The
// replaced file's mode is kept (its owner as far as the process may), a new one follows the umask; a link is
// followed to the file it names, even where that does not exist yet. A folder, fifo or device is not
// replaced. On failure the old file stands and no debris; only where the very last step fails, the fsync of
// the folder, the new one stands, though perhaps not after a crash.
[[nodiscard]] std::error_code replaceFile(const std::string& path, std::string_view bytes);

// Makes a folder and those above it, with the modes that the umask leaves. An existing folder is no error.
[[nodiscard]] std::error_code makeFolders(const std::string& path);

// Whether anything is at that path (links are followed).
[[nodiscard]] bool fileExists(const std::string& path);
[[nodiscard]] bool isFolder(const std::string& path);

// Two paths joined by exactly one slash, as text: an absolute or empty component never replaces the folder.
// ("/a", "b") and ("/a/", "/b") are "/a/b"; ("/a", "") is "/a"; ("", "b") is "b".
[[nodiscard]] std::string pathByAppending(const std::string& folder, std::string_view component);

} // namespace platform

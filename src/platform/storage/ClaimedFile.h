#pragma once

#include "platform/storage/FilePlace.h"
#include "platform/storage/OpenFile.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace platform {

// How one program takes a log away from the programs that append to it without losing a record: it claims the
// file by renaming it, reads it under its new name, and then puts a new file in the old place. While a file
// is claimed, the others find none in its place and make a new one.
//
// find() comes first, then claim(), unless an earlier program has left its claim, then resume(), which makes
// the claim this program's: it holds the claimed file's lock (flock), so that of several programs one works
// on it. It reads the file and ends the claim with replace() or replaceAndKeep(). A program that ends before
// leaves the claim to the next.
//
// Paths are bytes; a symbolic link is followed to the file that it names, and stays. All failures are soft.
// An error may be that of a change that has been made (see isMade); after any other, nothing has changed but,
// where the claim could not be ended, that the new file may be in the old place.
class ClaimedFile final {
public:
    // Opens the folder of a file that is to be claimed. The other functions may be called only after that.
    [[nodiscard]] std::error_code find(const std::string& path);

    // The path that the file has while it is claimed.
    [[nodiscard]] std::string path() const;

    // Renames the file to its claimed name in the same folder and syncs the folder. A file that already has
    // that name (a claim that was not ended) stays, and the error is std::errc::file_exists. Takes no lock.
    [[nodiscard]] std::error_code claim();

    // Takes the lock of the claimed file, waiting for a program that works on it as long as FolderLock's
    // policy says. std::errc::no_such_file_or_directory if there is no claim, StorageError::LockHeld
    // where the other program has not come to its end.
    [[nodiscard]] std::error_code resume();

    // The bytes of the claimed file, whatever has its name by now; errors as readFile. Only after resume().
    [[nodiscard]] std::optional<std::string> read(std::error_code* error = nullptr) const;

    // End the claim; only after resume(). Both first write these bytes to a new file at the original path,
    // with the access rights of the claimed one, unless another program has made a file there in the
    // meantime, which is kept. Then the claimed file is removed, or renamed to the original name with this
    // ending and, where that is taken, a number; `kept` is its new path. std::errc::no_such_file_or_directory
    // where another program has taken the claimed file away; nothing is done then.
    [[nodiscard]] std::error_code replace(std::string_view bytes);
    [[nodiscard]] std::error_code replaceAndKeep(std::string_view bytes, std::string_view ending,
                                                 std::string& kept);

private:
    [[nodiscard]] std::string claimedName() const { return place_.name() + ".aside"; }
    [[nodiscard]] std::error_code makeReplacement(std::string_view bytes) const;
    // An error unless the claimed name is still that of the file whose lock this object holds.
    [[nodiscard]] std::error_code findOwnFile() const;

    FilePlace place_;
    std::unique_ptr<OpenFile> file_; // holds the lock
};

} // namespace platform

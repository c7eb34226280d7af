#pragma once

#include "platform/storage/FilePlace.h"
#include "platform/storage/OpenFile.h"

#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace platform {

// How one program takes a log away from the programs that append to it without losing a record: it claims the
// file by renaming it, reads it under its new name, and then puts a new file in the old place. While a file
// is claimed, the others find none in its place and make a new one.
//
// A claim lasts until one of the two functions ends it; one that a program has left unfinished is resumed.
// The program that works on a claim holds the claimed file's lock (flock), so that of several programs one
// does.
//
// Paths are bytes; a symbolic link is followed to the file that it names, and stays. All failures are soft.
class ClaimedFile final {
public:
    // Finds the folder of a file that is to be claimed. An error of any other function follows from that.
    [[nodiscard]] std::error_code find(const std::string& path);

    // The path that the file has while it is claimed.
    [[nodiscard]] std::string path() const;

    // Renames the file to its claimed name in the same folder and syncs the folder. A file that already has
    // that name (an unfinished claim) stays, and the error is std::errc::file_exists. On failure nothing is
    // renamed.
    [[nodiscard]] std::error_code claim();

    // Takes the lock of the claimed file, waiting for a program that works on it as long as FolderLock's
    // policy says. std::errc::no_such_file_or_directory where nothing is claimed, StorageError::LockHeld
    // where the other program has not come to its end.
    [[nodiscard]] std::error_code resume();

    // Ends the claim. Both first write these bytes to a new file at the original path, with the access rights
    // of the claimed one, unless another program has made a file there in the meantime, which is kept. Then
    // the claimed file is removed, or renamed to the original name with this ending and, where that is taken,
    // a number; `kept` is its new path. The claimed file stays as it is on failure.
    [[nodiscard]] std::error_code replace(std::string_view bytes);
    [[nodiscard]] std::error_code replaceAndKeep(std::string_view bytes, std::string_view ending,
                                                 std::string& kept);

private:
    [[nodiscard]] std::string claimedName() const { return place_.name() + ".aside"; }
    [[nodiscard]] std::error_code makeReplacement(std::string_view bytes) const;
    [[nodiscard]] bool isStillThere() const;

    FilePlace place_;
    std::unique_ptr<OpenFile> file_; // holds the lock
};

} // namespace platform

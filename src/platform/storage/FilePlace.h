#pragma once

#include "platform/storage/OpenFile.h"

#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace platform {

// A regular file in a folder.
struct ExistingFile {
    std::string name;
    struct stat status;
    std::shared_ptr<OpenFile> handle; // of the same file, for its attributes alone (O_PATH)
};

// Renames a file in a folder unless the new name is taken (EEXIST). Returns -1 with errno set on failure. A
// file system that has no such rename gives the file its new name first and then takes the old one away, if
// it is still this file's: what another program puts there between the last look and the removal is lost
// then.
[[nodiscard]] int renameToFreeName(int folder, const std::string& from, const std::string& to);

// The folder and the name that a path leads to after symbolic links are followed. The file need not exist.
// The folder is kept open, so that all steps of a change happen in the same folder even if it is moved
// meanwhile.
class FilePlace final {
public:
    [[nodiscard]] std::error_code find(const std::string& path);

    [[nodiscard]] int folder() const { return folder_->number(); }
    [[nodiscard]] const std::string& folderPath() const { return folderPath_; }
    [[nodiscard]] const std::string& name() const { return name_; }

    // The regular file that has a name in the folder, or nothing if the name is free. A folder,
    // FIFO, device or link is an error.
    [[nodiscard]] std::error_code inspect(const std::string& name, std::optional<ExistingFile>& file) const;

    // Writes changes of the folder's entries to the disk. An error is that of a change that has been made
    // (see unsynced).
    [[nodiscard]] std::error_code syncFolder() const;

private:
    std::optional<OpenFile> folder_;
    std::string folderPath_;
    std::string name_;
};

} // namespace platform

#pragma once

#include "platform/storage/OpenFile.h"

#include <optional>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace platform {

// A regular file in a folder.
struct ExistingFile {
    std::string name;
    struct stat status;
};

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

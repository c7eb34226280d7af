#pragma once

#include "platform/storage/OpenFile.h"

#include <optional>
#include <string>
#include <system_error>

namespace platform {

// Where a path leads to, links followed; nothing need stand there. The folder is held open, so that all steps
// of a change happen in the same one even where it is moved meanwhile.
class FilePlace final {
public:
    [[nodiscard]] std::error_code find(const std::string& path);

    [[nodiscard]] int folder() const { return folder_->number(); }
    [[nodiscard]] const std::string& folderPath() const { return folderPath_; }
    [[nodiscard]] const std::string& name() const { return name_; }

    // What has changed in the folder is on the disk after this.
    [[nodiscard]] std::error_code syncFolder() const;

private:
    std::optional<OpenFile> folder_;
    std::string folderPath_;
    std::string name_;
};

} // namespace platform

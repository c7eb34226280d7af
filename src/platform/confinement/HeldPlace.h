#pragma once

#include "platform/storage/OpenFile.h"

#include <string>

namespace platform {

// The file or folder that a path leads to when this is made, if any. What a process is confined to stays that
// one: where another takes its place, the process has no access to it.
class HeldPlace final {
public:
    explicit HeldPlace(std::string path);

    // Whether the path leads to another file or folder by now. One that leads nowhere does not.
    [[nodiscard]] bool isAnother() const;

    // Whether it does, and what it leads to cannot be opened for reading.
    [[nodiscard]] bool isOutOfReach() const;

    [[nodiscard]] const OpenFile& file() const { return file_; }

private:
    std::string path_;
    OpenFile file_;
};

} // namespace platform

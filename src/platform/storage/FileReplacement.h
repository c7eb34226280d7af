#pragma once

#include "platform/storage/FilePlace.h"
#include "platform/storage/TemporaryFile.h"

#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace platform {

// What replaceFile() does, for a content that is made piece by piece. Nothing is touched before the first
// piece; where it is not finished, or something fails, the old file stands and no debris.
class FileReplacement final {
public:
    explicit FileReplacement(std::string path)
        : path_(std::move(path)) {}

    // False once something has failed; what comes after that is let go.
    bool append(std::string_view bytes);
    // The new file stands after this, or the first error comes back.
    [[nodiscard]] std::error_code finish();

private:
    [[nodiscard]] std::error_code begin();
    [[nodiscard]] std::error_code write(std::string_view bytes);
    [[nodiscard]] std::error_code complete();

    std::string path_;
    FilePlace place_;
    std::optional<struct stat> old_;
    std::optional<TemporaryFile> file_;
    std::error_code error_;
};

} // namespace platform

#pragma once

#include "platform/storage/FileVersion.h"

namespace platform {

// Which versions of files this process has replaced by which, so that whoever watches a file tells the
// changes of other programs from its own. Only the latest replacements are kept, many more than fall between
// two looks at a file. Main thread only.
class OwnReplacements final {
public:
    OwnReplacements() = delete;

    // Called by replaceFile once the new version is in place.
    static void note(const FileVersion& old, const FileVersion& replacement);

    // Whether this process alone, in any number of replacements, has turned one version into the other. Not
    // if another program has written the file in between: that program's version was replaced then, not this
    // one.
    [[nodiscard]] static bool lead(const FileVersion& from, const FileVersion& to);
};

} // namespace platform

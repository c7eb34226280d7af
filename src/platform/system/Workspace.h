#pragma once

#include <QString>

#include <functional>

namespace platform {

// Opens URLs with the desktop's handler. The text goes to the opener as it stands, never through a URL class,
// which would lower-case the scheme.
class Workspace final {
public:
    // Starts `gio open URL`, or `xdg-open URL` where gio is not installed, as a process of its own whose
    // output and exit status nobody reads. Never blocks. False where nothing could be started.
    static bool openUrl(const QString& url);

    // Puts another opener in place (tests); an empty one brings the desktop's back.
    static void setOpener(std::function<bool(const QString&)> opener);
};

} // namespace platform

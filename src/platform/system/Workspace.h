#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// Opens URLs with the handlers of the desktop. The text of a URL is passed on unchanged; a URL class would
// convert its scheme to lower case.
class Workspace final {
public:
    // The path of a program, and its arguments, the name that it is called by first.
    struct Command {
        std::string program;
        std::vector<std::string> arguments;
    };

    // Starts `gio open URL`, or `xdg-open URL` if gio is not installed, as a detached process whose output
    // and exit status are ignored. Never blocks. Returns false if no process could be started.
    static bool openUrl(const QString& url);

    // What openUrl starts; none if neither of the two is installed.
    [[nodiscard]] static std::optional<Command> commandFor(const QString& url);

    // Replaces what openUrl does; an empty function restores it.
    static void setOpener(std::function<bool(const QString&)> opener);
};

} // namespace platform

#pragma once

#include <QString>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace center {

// The command line of the panel program.
struct Options {
    // The picture that the program draws into a file instead of opening a window.
    struct Snapshot {
        QString file;
        double scale = 1;   // pixels to a point, 0.5 to 8
        std::string locale; // as LC_ALL names it; empty for the user's
        int width = 320;    // of the content, in points
    };

    std::string containers; // the folder of the group containers; empty if the environment names it
    std::optional<Snapshot> snapshot;
    bool showsVersion = false;
    bool showsHelp = false;
};

struct UsageError {
    QString message;
};

// The arguments without the program's name. "--name value" and "--name=value" are the same.
[[nodiscard]] std::variant<Options, UsageError> parseOptions(const std::vector<std::string>& arguments);

[[nodiscard]] QString helpText();
[[nodiscard]] QString versionText();

} // namespace center

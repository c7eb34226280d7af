#pragma once

#include "center/Commands.h"
#include "panel/Snapshot.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace program {

// The command line of the panel program.
struct Options {
    std::string containers; // the folder of the group containers; empty if the environment names it
    std::optional<panel::Snapshot> snapshot;
    std::string command{center::showCommand}; // what the centre is asked for
    bool showsVersion = false;
    bool showsHelp = false;
    bool isJson = false; // that help
};

struct UsageError {
    QString message;
    std::size_t place; // the number of the argument at fault, from 1
};

// The arguments without the program's name. "--name value" and "--name=value" are the same.
[[nodiscard]] std::variant<Options, UsageError> parseOptions(const std::vector<std::string>& arguments);

[[nodiscard]] QString helpText();
// The options, for programs (platform/system/CommandLineJson.h).
[[nodiscard]] QString helpJson();
[[nodiscard]] QString versionText();

} // namespace program

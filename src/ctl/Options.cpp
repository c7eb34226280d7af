#include "ctl/Options.h"

namespace ctl {

namespace {

constexpr platform::CommandLineOption options[] = {
    {"--containers", "DIR",
     "the folder of the group containers (otherwise $KORVEL_GROUP_CONTAINERS,\n"
     "otherwise group-containers in $XDG_DATA_HOME)"},
    {"--json", "", "print JSON"},
    {"--follow", "", "go on, and print a new line whenever the counts change"},
    {"--to", "json|xml",
     "as typed JSON (the default), in which kinds of values can be told apart, or as XML"},
    {"--version", "", "print the version and the group identifier"},
    {"--help", "", "print how a command, or each of them, is used", "-h"},
};

} // namespace

std::span<const platform::CommandLineOption> knownOptions() {
    return options;
}

std::variant<Options, platform::CommandLineError> parseOptions(const std::vector<std::string>& arguments) {
    const auto parsed = platform::parseCommandLine(options, platform::Operands::Anywhere, arguments);
    if (const auto* error = std::get_if<platform::CommandLineError>(&parsed))
        return *error;
    const auto& line = std::get<platform::CommandLine>(parsed);
    return Options{line.value("--containers").value_or(""),
                   line.value("--to").value_or(""),
                   line.has("--json"),
                   line.has("--follow"),
                   line.has("--version"),
                   line.has("--help"),
                   line};
}

} // namespace ctl

#include "ctl/Options.h"

namespace ctl {

namespace {

constexpr platform::CommandLineOption options[] = {
    {"--containers", "DIR",
     "the folder of the group containers (otherwise $KORVEL_GROUP_CONTAINERS,\n"
     "otherwise group-containers in $XDG_DATA_HOME)"},
    {"--json", "", "print JSON"},
    {"--to", "FORMAT", "json (typed: kinds of values can be told apart; the default) or xml"},
    {"--version", "", "print the version and the group identifier"},
    {"--help", "", "print this"},
};

} // namespace

std::span<const platform::CommandLineOption> knownOptions() {
    return options;
}

std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments) {
    const auto parsed = platform::parseCommandLine(options, platform::Operands::Anywhere, arguments);
    if (const auto* error = std::get_if<platform::CommandLineError>(&parsed))
        return error->message;
    const auto& line = std::get<platform::CommandLine>(parsed);
    return Options{line.value("--containers").value_or(""),
                   line.value("--to").value_or(""),
                   line.has("--json"),
                   line.has("--version"),
                   line.has("--help"),
                   line.operands};
}

} // namespace ctl

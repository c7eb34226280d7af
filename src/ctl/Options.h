#pragma once

#include "platform/system/CommandLine.h"

#include <span>
#include <string>
#include <variant>
#include <vector>

namespace ctl {

// The command line: options, which may stand anywhere, and the words of the command. "--" ends the options.
struct Options {
    std::string containers; // --containers; empty where it is not given
    std::string to;         // --to; likewise
    bool json = false;
    bool version = false;
    bool help = false;
    std::vector<std::string> words; // the command's name and its operands
};

// The options that the companion takes, for its help text.
[[nodiscard]] std::span<const platform::CommandLineOption> knownOptions();

// The options, or a sentence that says what is wrong with them.
[[nodiscard]] std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments);

} // namespace ctl

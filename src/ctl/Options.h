#pragma once

#include "platform/system/CommandLine.h"

#include <span>
#include <string>
#include <variant>
#include <vector>

namespace ctl {

// The command line of the companion. Options may be anywhere before the argument "--".
struct Options {
    std::string containers; // the value of --containers; empty without that option
    std::string to;         // the value of --to; empty without that option
    bool json = false;
    bool version = false;
    bool help = false;
    std::vector<std::string> words; // the command's name and its operands
};

// The options that the companion takes, for its help text.
[[nodiscard]] std::span<const platform::CommandLineOption> knownOptions();

// The options, or an error message.
[[nodiscard]] std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments);

} // namespace ctl

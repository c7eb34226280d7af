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
    bool follow = false;
    bool version = false;
    bool help = false;
    platform::CommandLine line; // its operands are the command's name and what follows it
};

// The options that the companion takes, for its help text.
[[nodiscard]] std::span<const platform::CommandLineOption> knownOptions();

// The options, or what is wrong with them.
[[nodiscard]] std::variant<Options, platform::CommandLineError>
parseOptions(const std::vector<std::string>& arguments);

} // namespace ctl

#pragma once

#include "platform/system/CommandLine.h"

#include <cstddef>
#include <map>
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
    std::vector<std::string> words; // the command's name and its operands
    // The number of the argument that each of them is, from 1, and how many arguments there are.
    std::map<std::string, std::size_t, std::less<>> optionPlaces;
    std::vector<std::size_t> wordPlaces;
    std::size_t argumentCount = 0;

    // The number of the argument that a word is; of one that is missing, the number that it would have.
    [[nodiscard]] std::size_t placeOf(std::size_t word) const {
        return word < wordPlaces.size() ? wordPlaces[word] : argumentCount + 1;
    }
};

// The options that the companion takes, for its help text.
[[nodiscard]] std::span<const platform::CommandLineOption> knownOptions();

// The options, or what is wrong with them.
[[nodiscard]] std::variant<Options, platform::CommandLineError>
parseOptions(const std::vector<std::string>& arguments);

} // namespace ctl

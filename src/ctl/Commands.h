#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ctl {

// One way in which a command is used. Help texts, shell completions and the check of a command line come from
// the table of these.
struct Command {
    std::string_view name;
    // The words that follow, with a space between, spelled as the values of options are
    // (platform::CommandLineOption). One in brackets may be left out.
    std::string_view operands;
    std::string_view options; // names, with a space between; those of every command are left out
    std::string_view text;    // what it does, in one line
    std::string_view details; // more lines for its own help text, each with a line feed; may be empty
    int (*perform)(const Options&, Streams&);
};

// The ways of one command stand together.
[[nodiscard]] std::span<const Command> commands();

// The options that go with every command.
inline constexpr std::string_view commonOptions = "--containers --version --help";

// The words of a text with one space between them.
[[nodiscard]] std::vector<std::string_view> wordsOf(std::string_view text);

// What is wrong with a command line.
struct Misuse {
    std::size_t place; // the number of the argument, from 1; one more than there are where one is missing
    std::string sentence;
};

// The way in which a command is to be used, by its operands and options.
[[nodiscard]] std::variant<const Command*, Misuse> commandOf(const Options& options);

} // namespace ctl

#pragma once

#include "platform/system/CommandLine.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The commands of a program. Its help texts, the check of its command line, and its packaging's manual page
// and shell completions come from one table.
namespace platform {

// One way in which a command is used.
struct CommandWay {
    std::string_view name;
    // The words that follow, with a space between, spelled as the values of options are (CommandLineOption).
    // One in brackets may be left out.
    std::string_view operands;
    std::string_view options; // names, with a space between; those of every command are left out
    std::string_view text;    // what it does, in one line
    std::string_view details; // more lines for its own help text, each with a line feed; may be empty
};

struct CommandTable {
    std::string_view program;
    std::vector<CommandWay> ways; // those of one command stand together
    std::span<const CommandLineOption> options;
    std::string_view commonOptions; // the names of those that go with every command, with a space between
    std::string_view notes;         // the last lines of the help text of all commands, each with a line feed
};

// The way in which a command is to be used, as its place in the table, by the line's operands and options; or
// what is wrong with the line.
[[nodiscard]] std::variant<std::size_t, CommandLineError> wayOf(const CommandTable& table,
                                                                const CommandLine& line);

// The answer to "help [COMMAND]" and to any line with --help: how the command is used that the line names,
// without one how each is; with --json always the table, as one object on one line (docs/scripts.md).
[[nodiscard]] std::variant<std::string, CommandLineError> helpOf(const CommandTable& table,
                                                                 const CommandLine& line);

} // namespace platform

#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The command line of a program, read by a table of the options that the program takes. The lines of its help
// text come from the same table.
//
// QCommandLineParser is not used: it takes the operand "-5" for an option, and an error is a sentence that
// does not tell what kind of error it is.
namespace platform {

// A value is named by a word. One in capitals stands for any text, which is the path of a folder where the
// word starts with DIR and of a file where it starts with FILE. One in small letters is what has to be given,
// with '|' between words of which one has to be: "json|xml".
struct CommandLineOption {
    std::string_view name;           // with its hyphens, as in "--containers"
    std::string_view value;          // the word for its value; empty for an option without a value
    std::string_view meaning;        // for the help text; may have several lines
    std::string_view shortName = {}; // another name with one hyphen, as in "-h"
};

// Where a command line may have operands: arguments that are not options.
enum class Operands {
    None,         // every argument has to be an option
    Anywhere,     // the argument "--" ends the options
    AfterOptions, // the first operand also ends the options
};

struct CommandLine {
    std::map<std::string, std::string, std::less<>> options; // values by name; empty without a value
    std::vector<std::string> operands;
    // The number of the argument that each of them is, from 1.
    std::map<std::string, std::size_t, std::less<>> optionPlaces;
    std::vector<std::size_t> operandPlaces;
    std::size_t argumentCount = 0;

    // The number of the argument that an operand is; of one that is missing, the number that it would have.
    [[nodiscard]] std::size_t placeOf(std::size_t operand) const;
    [[nodiscard]] bool has(std::string_view name) const;
    // The result is absent if the option is not given.
    [[nodiscard]] std::optional<std::string> value(std::string_view name) const;
};

struct CommandLineError {
    std::string message;   // part of a sentence, as in "--containers needs a value"
    std::size_t place = 0; // the number of the argument at fault, from 1
};

// Reads the arguments without the program's name. "--name value" and "--name=value" are the same; a value is
// not empty, and an option is given once at most. An argument that starts with two hyphens is an option, as
// is the short name of one; "-" and "-5" are operands.
[[nodiscard]] std::variant<CommandLine, CommandLineError>
parseCommandLine(std::span<const CommandLineOption> options, Operands operands,
                 const std::vector<std::string>& arguments);

// The words of which one has to be given, of a word in small letters: "json|xml" gives two. None for a word
// that stands for any text.
[[nodiscard]] std::vector<std::string_view> choicesOf(std::string_view word);

// "paid, later or info".
[[nodiscard]] std::string enumeration(const std::vector<std::string_view>& words);

// A line of a help text: what can be given and what it means.
struct HelpLine {
    std::string subject;
    std::string meaning; // may have several lines
};

[[nodiscard]] std::vector<HelpLine> helpLines(std::span<const CommandLineOption> options);

// The lines in two columns, indented by two spaces, with a line feed at the end.
[[nodiscard]] std::string helpInColumns(const std::vector<HelpLine>& lines);

} // namespace platform

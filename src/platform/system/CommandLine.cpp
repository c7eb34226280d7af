#include "platform/system/CommandLine.h"

#include <algorithm>

namespace platform {

namespace {

class Parser final {
public:
    Parser(std::span<const CommandLineOption> options, Operands operands,
           const std::vector<std::string>& arguments)
        : options_(options)
        , operands_(operands)
        , arguments_(arguments) {
        line_.argumentCount = arguments.size();
    }

    std::variant<CommandLine, CommandLineError> parse() {
        while (next_ < arguments_.size() && error_.empty())
            takeNext();
        if (!error_.empty())
            return CommandLineError{error_, place_};
        return std::move(line_);
    }

private:
    void takeNext() {
        const std::string& argument = arguments_[next_++];
        place_ = next_;
        const bool hasOperands = operands_ != Operands::None;
        if (hasOperands && (areOptionsOver_ || !isOption(argument)))
            takeOperand(argument);
        else if (hasOperands && argument == "--")
            areOptionsOver_ = true;
        else
            takeOption(argument);
    }

    [[nodiscard]] auto find(std::string_view name) const {
        return std::ranges::find_if(options_, [&](const CommandLineOption& option) {
            return !name.empty() && (option.name == name || option.shortName == name);
        });
    }

    [[nodiscard]] bool isOption(const std::string& argument) const {
        return argument.starts_with("--") || find(argument) != options_.end();
    }

    void takeOperand(const std::string& argument) {
        line_.operands.push_back(argument);
        line_.operandPlaces.push_back(place_);
        if (operands_ == Operands::AfterOptions)
            areOptionsOver_ = true;
    }

    void takeOption(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const auto option = find(std::string_view(argument).substr(0, equals));
        const std::string name(option == options_.end() ? std::string_view() : option->name);
        if (name.empty())
            error_ = "unknown option " + argument;
        else if (option->value.empty() && equals != std::string::npos)
            error_ = name + " takes no value";
        else if (line_.has(name))
            error_ = name + " is given twice";
        if (!error_.empty())
            return;
        line_.optionPlaces[name] = place_;
        line_.options[name] = option->value.empty() ? std::string() : takeValue(*option, argument, equals);
    }

    std::string takeValue(const CommandLineOption& option, const std::string& argument, std::size_t equals) {
        std::string value;
        if (equals != std::string::npos)
            value = argument.substr(equals + 1);
        else if (next_ < arguments_.size())
            value = arguments_[next_++];
        const std::vector<std::string_view> choices = choicesOf(option.value);
        if (value.empty())
            error_ = std::string(option.name) + " needs a value";
        else if (!choices.empty() && std::ranges::find(choices, value) == choices.end())
            error_ = std::string(option.name) + " takes " + enumeration(choices) + ", not " + value;
        return value;
    }

    std::span<const CommandLineOption> options_;
    Operands operands_;
    const std::vector<std::string>& arguments_;
    std::size_t next_ = 0;
    std::size_t place_ = 0; // the number of the argument that is being read, from 1
    bool areOptionsOver_ = false;
    CommandLine line_;
    std::string error_;
};

} // namespace

std::size_t CommandLine::placeOf(std::size_t operand) const {
    return operand < operandPlaces.size() ? operandPlaces[operand] : argumentCount + 1;
}

bool CommandLine::has(std::string_view name) const {
    return options.contains(name);
}

std::optional<std::string> CommandLine::value(std::string_view name) const {
    const auto option = options.find(name);
    return option == options.end() ? std::nullopt : std::optional(option->second);
}

std::variant<CommandLine, CommandLineError> parseCommandLine(std::span<const CommandLineOption> options,
                                                             Operands operands,
                                                             const std::vector<std::string>& arguments) {
    return Parser(options, operands, arguments).parse();
}

std::vector<std::string_view> choicesOf(std::string_view word) {
    std::vector<std::string_view> choices;
    if (word.empty() || std::ranges::any_of(word, [](char c) { return c >= 'A' && c <= 'Z'; }))
        return choices;
    while (word.find('|') != std::string_view::npos) {
        choices.push_back(word.substr(0, word.find('|')));
        word.remove_prefix(choices.back().size() + 1);
    }
    choices.push_back(word);
    return choices;
}

std::string enumeration(const std::vector<std::string_view>& words) {
    std::string text;
    for (std::size_t index = 0; index < words.size(); ++index)
        text.append(index == 0 ? "" : index + 1 == words.size() ? " or " : ", ").append(words[index]);
    return text;
}

std::vector<HelpLine> helpLines(std::span<const CommandLineOption> options) {
    std::vector<HelpLine> lines;
    for (const CommandLineOption& option : options) {
        std::string subject(option.shortName);
        subject.append(subject.empty() ? "" : ", ").append(option.name);
        if (!option.value.empty())
            subject.append(" ").append(option.value);
        lines.push_back({subject, std::string(option.meaning)});
    }
    return lines;
}

std::string helpInColumns(const std::vector<HelpLine>& lines) {
    std::size_t width = 0;
    for (const HelpLine& line : lines)
        width = std::max(width, line.subject.size());
    const std::string secondColumn(width + 4, ' ');
    std::string text;
    for (const HelpLine& line : lines) {
        text += "  " + line.subject + secondColumn.substr(line.subject.size() + 2);
        for (const char c : line.meaning)
            text += c == '\n' ? '\n' + secondColumn : std::string(1, c);
        text += '\n';
    }
    return text;
}

} // namespace platform

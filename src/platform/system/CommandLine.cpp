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
        , arguments_(arguments) {}

    std::variant<CommandLine, CommandLineError> parse() {
        while (next_ < arguments_.size() && error_.empty())
            takeArgument(arguments_[next_++]);
        if (!error_.empty())
            return CommandLineError{error_};
        return std::move(line_);
    }

private:
    void takeArgument(const std::string& argument) {
        const bool hasOperands = operands_ != Operands::None;
        if (hasOperands && (areOptionsOver_ || !argument.starts_with("--")))
            takeOperand(argument);
        else if (hasOperands && argument == "--")
            areOptionsOver_ = true;
        else
            takeOption(argument);
    }

    void takeOperand(const std::string& argument) {
        line_.operands.push_back(argument);
        if (operands_ == Operands::AfterOptions)
            areOptionsOver_ = true;
    }

    void takeOption(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const auto option =
            std::find_if(options_.begin(), options_.end(),
                         [&](const CommandLineOption& candidate) { return candidate.name == name; });
        if (option == options_.end())
            error_ = "unknown option " + argument;
        else if (option->value.empty() && equals != std::string::npos)
            error_ = name + " takes no value";
        else if (line_.has(name))
            error_ = name + " is given twice";
        else
            line_.options[name] = option->value.empty() ? std::string() : takeValue(name, argument, equals);
    }

    std::string takeValue(const std::string& name, const std::string& argument, std::size_t equals) {
        std::string value;
        if (equals != std::string::npos)
            value = argument.substr(equals + 1);
        else if (next_ < arguments_.size())
            value = arguments_[next_++];
        if (value.empty())
            error_ = name + " needs a value";
        return value;
    }

    std::span<const CommandLineOption> options_;
    Operands operands_;
    const std::vector<std::string>& arguments_;
    std::size_t next_ = 0;
    bool areOptionsOver_ = false;
    CommandLine line_;
    std::string error_;
};

} // namespace

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

std::vector<HelpLine> helpLines(std::span<const CommandLineOption> options) {
    std::vector<HelpLine> lines;
    for (const CommandLineOption& option : options) {
        std::string subject(option.name);
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

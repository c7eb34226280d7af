#include "platform/system/CommandTable.h"

#include "platform/system/CommandLineJson.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

// The words of a text with one space between them.
std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    while (!text.empty()) {
        words.push_back(text.substr(0, text.find(' ')));
        text.remove_prefix(std::min(words.back().size() + 1, text.size()));
    }
    return words;
}

bool isOptional(std::string_view operand) {
    return operand.starts_with('[');
}

bool accepts(std::string_view operand, std::string_view word) {
    const auto choices = choicesOf(operand);
    return choices.empty() || std::ranges::find(choices, word) != choices.end();
}

std::vector<const CommandWay*> waysOf(const CommandTable& table, std::string_view command) {
    std::vector<const CommandWay*> ways;
    for (const CommandWay& way : table.ways)
        if (way.name == command)
            ways.push_back(&way);
    return ways;
}

// What each of the ways may have as its next operand.
std::vector<std::string_view> expected(const std::vector<const CommandWay*>& ways, std::size_t index) {
    std::vector<std::string_view> words;
    for (const CommandWay* way : ways) {
        const std::vector<std::string_view> operands = wordsOf(way->operands);
        if (index >= operands.size())
            continue;
        const auto choices = choicesOf(operands[index]);
        if (choices.empty())
            words.push_back(operands[index]);
        words.insert(words.end(), choices.begin(), choices.end());
    }
    words.erase(std::unique(words.begin(), words.end()), words.end());
    return words;
}

std::variant<const CommandWay*, CommandLineError> wayByOperands(const CommandTable& table,
                                                                const CommandLine& line) {
    const std::string& name = line.operands.front();
    std::vector<const CommandWay*> ways = waysOf(table, name);
    if (ways.empty())
        return CommandLineError{"unknown command " + name, line.placeOf(0)};
    for (std::size_t index = 1; index < line.operands.size(); ++index) {
        const std::string& word = line.operands[index];
        const auto words = expected(ways, index - 1);
        std::erase_if(ways, [&](const CommandWay* way) {
            const auto operands = wordsOf(way->operands);
            return index > operands.size() || !accepts(operands[index - 1], word);
        });
        if (ways.empty())
            return CommandLineError{words.empty() ? name + " has no place for " + word
                                                  : word + " is not " + enumeration(words),
                                    line.placeOf(index)};
    }
    const std::size_t count = line.operands.size() - 1;
    const auto complete = std::ranges::find_if(ways, [&](const CommandWay* way) {
        const auto operands = wordsOf(way->operands);
        return operands.size() == count || isOptional(operands[count]);
    });
    if (complete != ways.end())
        return *complete;
    return CommandLineError{enumeration(expected(ways, count)) + " is missing",
                            line.placeOf(line.operands.size())};
}

// "plist FILE [--to json|xml]".
std::string synopsisOf(const CommandTable& table, const CommandWay& way) {
    std::string text(way.name);
    for (const std::string_view operand : wordsOf(way.operands))
        text.append(" ").append(operand);
    for (const std::string_view name : wordsOf(way.options)) {
        const auto value = std::ranges::find(table.options, name, &CommandLineOption::name)->value;
        text.append(" [").append(name).append(value.empty() ? "" : " ").append(value).append("]");
    }
    return text;
}

std::string helpForAll(const CommandTable& table) {
    std::vector<HelpLine> lines;
    for (const CommandWay& way : table.ways)
        lines.push_back({synopsisOf(table, way), std::string(way.text)});
    return std::string(table.program) + " [--containers DIR] COMMAND\n\n" + helpInColumns(lines) + '\n' +
           helpInColumns(helpLines(table.options)) + '\n' + std::string(table.notes);
}

// The options of all ways of a command, in the order of the table of options.
std::vector<CommandLineOption> optionsOf(const CommandTable& table,
                                         const std::vector<const CommandWay*>& ways) {
    std::vector<std::string_view> names = wordsOf(table.commonOptions);
    for (const CommandWay* way : ways)
        for (const std::string_view name : wordsOf(way->options))
            names.push_back(name);
    std::vector<CommandLineOption> options;
    std::ranges::copy_if(table.options, std::back_inserter(options), [&](const auto& option) {
        return std::ranges::find(names, option.name) != names.end();
    });
    return options;
}

std::string helpFor(const CommandTable& table, const std::vector<const CommandWay*>& ways) {
    std::vector<HelpLine> lines;
    std::string details;
    for (const CommandWay* way : ways) {
        lines.push_back({std::string(table.program) + ' ' + synopsisOf(table, *way), std::string(way->text)});
        details += way->details;
    }
    return helpInColumns(lines) + '\n' + details + (details.empty() ? "" : "\n") +
           helpInColumns(helpLines(optionsOf(table, ways)));
}

QJsonArray namesAsJson(std::string_view text) {
    QJsonArray names;
    for (const std::string_view word : wordsOf(text))
        names.append(jsonOf(word));
    return names;
}

std::string tableAsJson(const CommandTable& table) {
    QJsonArray all;
    for (const CommandWay& way : table.ways) {
        all.append(QJsonObject{{QStringLiteral("command"), jsonOf(way.name)},
                               {QStringLiteral("operands"), namesAsJson(way.operands)},
                               {QStringLiteral("options"), namesAsJson(way.options)},
                               {QStringLiteral("text"), jsonOf(way.text)}});
    }
    return helpAsJson(table.program, table.options,
                      {{QStringLiteral("commands"), all},
                       {QStringLiteral("commonOptions"), namesAsJson(table.commonOptions)}});
}

} // namespace

std::variant<std::size_t, CommandLineError> wayOf(const CommandTable& table, const CommandLine& line) {
    if (line.operands.empty())
        return CommandLineError{"a command is missing", line.placeOf(0)};
    const auto result = wayByOperands(table, line);
    if (const auto* error = std::get_if<CommandLineError>(&result))
        return *error;
    const CommandWay* way = std::get<const CommandWay*>(result);
    const auto own = wordsOf(way->options);
    const auto common = wordsOf(table.commonOptions);
    for (const auto& [option, place] : line.optionPlaces)
        if (std::ranges::find(own, option) == own.end() && std::ranges::find(common, option) == common.end())
            return CommandLineError{option + " does not go with " + line.operands.front(), place};
    return static_cast<std::size_t>(way - table.ways.data());
}

std::variant<std::string, CommandLineError> helpOf(const CommandTable& table, const CommandLine& line) {
    if (line.has("--json"))
        return tableAsJson(table);
    const std::size_t word = !line.operands.empty() && line.operands.front() == "help" ? 1 : 0;
    if (word >= line.operands.size())
        return helpForAll(table);
    const std::vector<const CommandWay*> ways = waysOf(table, line.operands[word]);
    if (ways.empty())
        return CommandLineError{"unknown command " + line.operands[word], line.placeOf(word)};
    return helpFor(table, ways);
}

} // namespace platform

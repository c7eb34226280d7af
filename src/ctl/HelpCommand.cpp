#include "ctl/HelpCommand.h"

#include "ctl/Commands.h"
#include "platform/system/CommandLineJson.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <iterator>
#include <ostream>

namespace ctl {

namespace {

const platform::CommandLineOption& optionNamed(std::string_view name) {
    return *std::ranges::find(knownOptions(), name, &platform::CommandLineOption::name);
}

// "plist FILE [--to json|xml]".
std::string synopsisOf(const Command& command) {
    std::string text(command.name);
    for (const std::string_view operand : wordsOf(command.operands))
        text.append(" ").append(operand);
    for (const std::string_view name : wordsOf(command.options)) {
        const std::string_view value = optionNamed(name).value;
        text.append(" [").append(name).append(value.empty() ? "" : " ").append(value).append("]");
    }
    return text;
}

std::string helpForAll() {
    std::vector<platform::HelpLine> lines;
    for (const Command& command : commands())
        lines.push_back({synopsisOf(command), std::string(command.text)});
    return "korvel-todayctl [--containers DIR] COMMAND\n\n" + platform::helpInColumns(lines) + '\n' +
           platform::helpInColumns(platform::helpLines(knownOptions())) + R"(
Dates are seconds since 1970-01-01 00:00 UTC or texts: "today+3 18:00", "2026-03-10 18:00".
Exit status: 0 done, 1 the thing asked for failed, 2 wrong usage.
)";
}

// The options of all ways of a command, in the order of the table of options.
std::vector<platform::CommandLineOption> optionsOf(const std::vector<Command>& ways) {
    std::vector<std::string_view> names = wordsOf(commonOptions);
    for (const Command& way : ways)
        for (const std::string_view name : wordsOf(way.options))
            names.push_back(name);
    std::vector<platform::CommandLineOption> options;
    std::ranges::copy_if(knownOptions(), std::back_inserter(options), [&](const auto& option) {
        return std::ranges::find(names, option.name) != names.end();
    });
    return options;
}

std::string helpFor(const std::vector<Command>& ways) {
    std::vector<platform::HelpLine> lines;
    std::string details;
    for (const Command& way : ways) {
        lines.push_back({"korvel-todayctl " + synopsisOf(way), std::string(way.text)});
        details += way.details;
    }
    return platform::helpInColumns(lines) + '\n' + details + (details.empty() ? "" : "\n") +
           platform::helpInColumns(platform::helpLines(optionsOf(ways)));
}

QJsonArray namesAsJson(std::string_view text) {
    QJsonArray names;
    for (const std::string_view word : wordsOf(text))
        names.append(platform::jsonOf(word));
    return names;
}

std::string allAsJson() {
    QJsonArray all;
    for (const Command& command : commands()) {
        all.append(QJsonObject{{QStringLiteral("command"), platform::jsonOf(command.name)},
                               {QStringLiteral("operands"), namesAsJson(command.operands)},
                               {QStringLiteral("options"), namesAsJson(command.options)},
                               {QStringLiteral("text"), platform::jsonOf(command.text)}});
    }
    return platform::helpAsJson(
        "korvel-todayctl", knownOptions(),
        {{QStringLiteral("commands"), all}, {QStringLiteral("commonOptions"), namesAsJson(commonOptions)}});
}

} // namespace

int help(const Options& options, Streams& streams) {
    if (options.json) {
        streams.out << allAsJson();
        return Done;
    }
    const std::size_t word = !options.words.empty() && options.words.front() == "help" ? 1 : 0;
    if (word >= options.words.size()) {
        streams.out << helpForAll();
        return Done;
    }
    std::vector<Command> ways;
    std::ranges::copy_if(commands(), std::back_inserter(ways),
                         [&](const Command& command) { return command.name == options.words[word]; });
    if (ways.empty())
        return misused(streams, options.placeOf(word), "unknown command " + options.words[word]);
    streams.out << helpFor(ways);
    return Done;
}

} // namespace ctl

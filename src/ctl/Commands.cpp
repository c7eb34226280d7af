#include "ctl/Commands.h"

#include "ctl/ActCommand.h"
#include "ctl/CheckCommand.h"
#include "ctl/ConsumeCommand.h"
#include "ctl/HelpCommand.h"
#include "ctl/ListCommand.h"
#include "ctl/PlistCommand.h"
#include "ctl/PublishCommand.h"
#include "ctl/SettingsCommand.h"
#include "ctl/StatusCommand.h"

#include <algorithm>

namespace ctl {

namespace {

constexpr std::string_view aboutAct = "PLANPK and DATE are those of a transaction that list prints.\n";

constexpr std::string_view aboutStatus = "The counts are those of the panel: of all transactions that list "
                                         "prints. With --follow they are a line each\n"
                                         "time they change, with --json in JSON Lines.\n";

constexpr Command table[] = {
    {"list", "", "--json", "print the transactions that the panel reads, and how many it shows", "", list},
    {"act", "PLANPK DATE paid|delete|delete-future|info", "",
     "do to a transaction what the panel's buttons do", aboutAct, act},
    {"act", "PLANPK DATE later DAYS", "", "put a transaction off to so many days from today", "", act},
    {"consume", "", "--json", "print the action log, a record on each line, then empty it", "", consume},
    {"plist", "FILE", "--to", "print any property list (- is standard input)", "", plistFile},
    {"publish", "FILE.json", "", "make an array of objects the feed (- is standard input)",
     "Each object has the keys of the feed: date, name, image, amount, income, expense, planpk and single.\n"
     "A date is a number or a text.\n",
     publish},
    {"settings", "get KEY", "--json", "print a shared setting", "", settings},
    {"settings", "set KEY VALUE", "", "change a shared setting", "", settings},
    {"check", "", "--json", "name every fault of the container's files and what mends it",
     "Fails if a fault ends the panel or loses an action.\n", check},
    {"status", "", "--json --follow", "tell how many are overdue and due, and how far this kernel confines",
     aboutStatus, status},
    {"help", "[COMMAND]", "--json", "print how a command, or each of them, is used",
     "With --json: all commands and options, for programs.\n", help},
};

bool isOptional(std::string_view operand) {
    return operand.starts_with('[');
}

bool accepts(std::string_view operand, std::string_view word) {
    const auto choices = platform::choicesOf(operand);
    return choices.empty() || std::ranges::find(choices, word) != choices.end();
}

// What each of the ways may have as its next operand.
std::vector<std::string_view> expected(const std::vector<const Command*>& ways, std::size_t index) {
    std::vector<std::string_view> words;
    for (const Command* way : ways) {
        const std::vector<std::string_view> operands = wordsOf(way->operands);
        if (index >= operands.size())
            continue;
        const auto choices = platform::choicesOf(operands[index]);
        if (choices.empty())
            words.push_back(operands[index]);
        words.insert(words.end(), choices.begin(), choices.end());
    }
    words.erase(std::unique(words.begin(), words.end()), words.end());
    return words;
}

std::variant<const Command*, Misuse> wayOf(const Options& options) {
    const std::string& name = options.words.front();
    std::vector<const Command*> ways;
    for (const Command& command : table)
        if (command.name == name)
            ways.push_back(&command);
    if (ways.empty())
        return Misuse{options.placeOf(0), "unknown command " + name};
    for (std::size_t index = 1; index < options.words.size(); ++index) {
        const std::string& word = options.words[index];
        const auto words = expected(ways, index - 1);
        std::erase_if(ways, [&](const Command* way) {
            const auto operands = wordsOf(way->operands);
            return index > operands.size() || !accepts(operands[index - 1], word);
        });
        if (ways.empty())
            return Misuse{options.placeOf(index), words.empty()
                                                      ? name + " has no place for " + word
                                                      : word + " is not " + platform::enumeration(words)};
    }
    const std::size_t count = options.words.size() - 1;
    const auto complete = std::ranges::find_if(ways, [&](const Command* way) {
        const auto operands = wordsOf(way->operands);
        return operands.size() == count || isOptional(operands[count]);
    });
    if (complete != ways.end())
        return *complete;
    return Misuse{options.placeOf(options.words.size()),
                  platform::enumeration(expected(ways, count)) + " is missing"};
}

} // namespace

std::span<const Command> commands() {
    return table;
}

std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    while (!text.empty()) {
        words.push_back(text.substr(0, text.find(' ')));
        text.remove_prefix(std::min(words.back().size() + 1, text.size()));
    }
    return words;
}

std::variant<const Command*, Misuse> commandOf(const Options& options) {
    if (options.words.empty())
        return Misuse{options.placeOf(0), "a command is missing"};
    const auto way = wayOf(options);
    const auto* const* command = std::get_if<const Command*>(&way);
    if (!command)
        return way;
    const auto own = wordsOf((*command)->options);
    const auto common = wordsOf(commonOptions);
    for (const auto& [option, place] : options.optionPlaces)
        if (std::ranges::find(own, option) == own.end() && std::ranges::find(common, option) == common.end())
            return Misuse{place, option + " does not go with " + options.words.front()};
    return way;
}

} // namespace ctl

#include "ctl/Program.h"

#include "ctl/ActCommand.h"
#include "ctl/CheckCommand.h"
#include "ctl/ConsumeCommand.h"
#include "ctl/ListCommand.h"
#include "ctl/PlistCommand.h"
#include "ctl/PublishCommand.h"
#include "ctl/SettingsCommand.h"
#include "ctl/StatusCommand.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/GroupContainers.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <string_view>

namespace ctl {

namespace {

struct Command {
    std::string_view name;
    std::string_view operands;
    std::string_view meaning; // for the help text
    int (*perform)(const Options&, Streams&);
};

constexpr Command commands[] = {
    {"list", "[--json]", "the planned transactions of the feed, and how many the widget shows", list},
    {"act", "PLANPK DATE ACTION",
     "do to one of them what the widget's buttons do; ACTION is one of\n"
     "paid, later DAYS, delete, delete-future, info",
     act},
    {"consume", "[--json]", "print the action log, then empty it", consume},
    {"plist", "FILE [--to FORMAT]", "print any property list (- is standard input)", plistFile},
    {"publish", "FILE.json", "make an array of objects the feed (- is standard input)", publish},
    {"settings", "get KEY [--json]", "print a shared setting", settings},
    {"settings", "set KEY VALUE", "change one", settings},
    {"check", "[--json]",
     "name every fault of the container's files, what the widget does about it\n"
     "and what mends it; fails if one would end the widget or lose an action",
     check},
    {"status", "[--json]", "how far this kernel confines the panel and this program to the container",
     status},
};

std::string helpText() {
    std::vector<platform::HelpLine> lines;
    for (const Command& command : commands)
        lines.push_back(
            {std::string(command.name).append(" ").append(command.operands), std::string(command.meaning)});
    const std::vector<platform::HelpLine> options = platform::helpLines(knownOptions());
    lines.insert(lines.end(), options.begin(), options.end());
    return "korvel-todayctl [--containers DIR] COMMAND\n\n" + platform::helpInColumns(lines) + R"(
Dates are seconds since 1970-01-01 00:00 UTC or texts: "today+3 18:00", "2026-03-10 18:00".
Exit status: 0 done, 1 the thing asked for failed, 2 wrong usage.
)";
}

int perform(const Options& options, Streams& streams) {
    if (options.words.empty())
        return misused(streams, "a command is missing");
    const std::string& name = options.words.front();
    if (!options.to.empty() && name != "plist")
        return misused(streams, "--to goes with plist");
    const auto* const command = std::find_if(std::begin(commands), std::end(commands),
                                             [&](const Command& known) { return known.name == name; });
    if (command == std::end(commands))
        return misused(streams, "unknown command " + name);
    return command->perform(options, streams);
}

int answer(const Options& options, Streams& streams) {
    if (options.help)
        streams.out << helpText();
    else if (options.version)
        streams.out << "korvel-todayctl " KORVEL_VERSION " (" << fullEditionGroupIdentifier << ")\n";
    else
        return perform(options, streams);
    return Done;
}

} // namespace

int run(const std::vector<std::string>& arguments, Streams& streams) {
    const auto options = parseOptions(arguments);
    if (const auto* error = std::get_if<std::string>(&options))
        return misused(streams, *error);
    platform::GroupContainers::setFolder(std::get<Options>(options).containers);
    platform::FolderLock::setPolicy(platform::FolderLock::required);
    const int status = answer(std::get<Options>(options), streams);
    streams.out.flush();
    if (status == Done && !streams.out)
        return failed(streams, "standard output", "it cannot be written");
    return status;
}

} // namespace ctl

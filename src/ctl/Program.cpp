#include "ctl/Program.h"

#include "ctl/Commands.h"
#include "exchange/GroupIdentifiers.h"
#include "platform/storage/GroupContainers.h"

#include <ostream>
#include <string_view>

namespace ctl {

namespace {

constexpr std::string_view usage =
    R"(korvel-todayctl [--containers DIR] COMMAND

  list [--json]            the planned transactions of the feed, and how many the widget shows
  act PLANPK DATE ACTION   do to one of them what the widget's buttons do; ACTION is one of
                           paid, later DAYS, delete, delete-future, info
  consume [--json]         print the action log, then empty it
  plist FILE [--to FORMAT] print any property list; FORMAT is json (typed, the default) or xml
  publish FILE.json        make an array of objects the feed (- is standard input)
  settings get KEY         print a shared setting
  settings set KEY VALUE   change one
  --version                print the version and the group identifier
  --help                   print this

Dates are seconds since 1970-01-01 00:00 UTC or texts: "today+3 18:00", "2026-03-10 18:00".
Exit status: 0 done, 1 the thing asked for failed, 2 wrong usage.
)";

struct Command {
    std::string_view name;
    int (*perform)(const Options&, Streams&);
};

constexpr Command commands[] = {
    {"act", act},         {"consume", consume}, {"list", list},
    {"plist", plistFile}, {"publish", publish}, {"settings", settings},
};

int perform(const Options& options, Streams& streams) {
    if (options.words.empty())
        return misused(streams, "a command is missing");
    if (!options.to.empty() && options.words.front() != "plist")
        return misused(streams, "--to goes with plist");
    for (const Command& command : commands)
        if (command.name == options.words.front())
            return command.perform(options, streams);
    return misused(streams, options.words.front() + " is no command");
}

int answer(const Options& options, Streams& streams) {
    if (options.help)
        streams.out << usage;
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
    const int status = answer(std::get<Options>(options), streams);
    streams.out.flush();
    if (status == Done && !streams.out)
        return failed(streams, "standard output", "it cannot be written");
    return status;
}

} // namespace ctl

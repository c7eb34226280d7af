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

#include <iterator>

namespace ctl {

namespace {

constexpr std::string_view aboutAct = "PLANPK and DATE are those of a transaction that list prints.\n";

constexpr std::string_view aboutStatus = "The counts are those of the panel: of all transactions that list "
                                         "prints. With --follow they are a line each\n"
                                         "time they change, with --json in JSON Lines.\n";

constexpr Command table[] = {
    {{"list", "", "--json", "print the transactions that the panel reads, and how many it shows", ""}, list},
    {{"act", "PLANPK DATE paid|delete|delete-future|info", "",
      "do to a transaction what the panel's buttons do", aboutAct},
     act},
    {{"act", "PLANPK DATE later DAYS", "", "put a transaction off to so many days from today", ""}, act},
    {{"consume", "", "--json", "print the action log, a record on each line, then empty it", ""}, consume},
    {{"plist", "FILE", "--to", "print any property list (- is standard input)", ""}, plistFile},
    {{"publish", "FILE.json", "", "make an array of objects the feed (- is standard input)",
      "Each object has the keys of the feed: date, name, image, amount, income, expense, planpk and single.\n"
      "A date is a number or a text.\n"},
     publish},
    {{"settings", "get KEY", "--json", "print a shared setting", ""}, settings},
    {{"settings", "set KEY VALUE", "", "change a shared setting", ""}, settings},
    {{"check", "", "--json", "name every fault of the container's files and what mends it",
      "Fails if a fault ends the panel or loses an action.\n"},
     check},
    {{"status", "", "--json --follow", "tell how many are overdue and due, and how far this kernel confines",
      aboutStatus},
     status},
    {{"help", "[COMMAND]", "--json", "print how a command, or each of them, is used",
      "With --json: all commands and options, for programs.\n"},
     help},
};

constexpr std::string_view notes =
    "Dates are seconds since 1970-01-01 00:00 UTC or texts: \"today+3 18:00\", \"2026-03-10 18:00\".\n"
    "Exit status: 0 done, 1 the thing asked for failed, 2 wrong usage.\n";

} // namespace

std::span<const Command> commands() {
    return table;
}

platform::CommandTable commandTable() {
    return {"korvel-todayctl",
            {std::begin(table), std::end(table)},
            knownOptions(),
            "--containers --version --help",
            notes};
}

} // namespace ctl

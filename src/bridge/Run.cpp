#include "bridge/Run.h"

#include "bridge/Commands.h"
#include "bridge/Update.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/CommandTable.h"

#include <cstddef>
#include <iterator>
#include <ostream>
#include <variant>

namespace bridge {

namespace {

constexpr platform::CommandLineOption options[] = {
    {"--containers", "DIR",
     "the folder of the group containers (otherwise $KORVEL_GROUP_CONTAINERS,\n"
     "otherwise group-containers in $XDG_DATA_HOME)"},
    {"--json", "", "print JSON"},
    {"--version", "", "print the version"},
    {"--help", "", "print how a command, or each of them, is used", "-h"},
};

struct Command : platform::CommandWay {
    int (*perform)(Surroundings& surroundings); // null for help, which the table answers
};

constexpr Command commands[] = {
    {{"sources", "", "--json", "list files of finance programs that can be connected", ""}, listSources},
    {{"connect", "FILE", "--json", "show the plans of a file from the next update on",
      "A file of HomeBank, KMyMoney or GnuCash, or a journal of hledger. It is read and never written.\n"},
     connectFile},
    {{"disconnect", "FILE", "", "show them no longer", ""}, disconnectFile},
    {{"update", "", "", "read the connected files, take what was done in the panel, and publish",
      "Fails if one of the files cannot be read; the others are published all the same.\n"},
     update},
    {{"status", "", "--json", "tell what is connected, read and shown", ""}, showStatus},
    {{"pending", "", "--json", "list what was paid in the panel and is not yet entered in its program", ""},
     showPending},
    {{"undo", "", "--json", "take back the last thing done in the panel that is not yet entered", ""}, undo},
    {{"export", "FILE", "", "print the pending payments of a KMyMoney file, as OFX", ""}, exportPayments},
    {{"open", "URL", "", "open what the panel asks for in its program", ""}, openUrl},
    {{"help", "[COMMAND]", "--json", "print how a command, or each of them, is used",
      "With --json: all commands and options, for programs.\n"},
     nullptr},
};

platform::CommandTable commandTable() {
    return {"korvel-today-bridge",
            {std::begin(commands), std::end(commands)},
            options,
            "--containers --version --help",
            "Exit status: 0 done, 1 the thing asked for failed, 2 wrong usage.\n"};
}

int misused(Surroundings& surroundings, const platform::CommandLineError& error) {
    return misused(surroundings, "argument " + std::to_string(error.place) + ": " + error.message);
}

int help(const platform::CommandLine& line, Surroundings& surroundings) {
    const auto text = platform::helpOf(commandTable(), line);
    if (const auto* error = std::get_if<platform::CommandLineError>(&text))
        return misused(surroundings, *error);
    surroundings.out << std::get<std::string>(text);
    return Done;
}

int answer(const platform::CommandLine& line, Surroundings& surroundings) {
    if (line.has("--help"))
        return help(line, surroundings);
    if (line.has("--version")) {
        surroundings.out << "korvel-today-bridge " KORVEL_VERSION "\n";
        return Done;
    }
    const auto way = platform::wayOf(commandTable(), line);
    if (const auto* error = std::get_if<platform::CommandLineError>(&way))
        return misused(surroundings, *error);
    const Command& command = commands[std::get<std::size_t>(way)];
    surroundings.operands.assign(line.operands.begin() + 1, line.operands.end());
    return command.perform ? command.perform(surroundings) : help(line, surroundings);
}

} // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err, Programs programs,
        const Icons& icons) {
    Surroundings surroundings{out, err, programs, icons, false, {}};
    const auto parsed = platform::parseCommandLine(options, platform::Operands::Anywhere, arguments);
    if (const auto* error = std::get_if<platform::CommandLineError>(&parsed))
        return misused(surroundings, *error);
    const auto& line = std::get<platform::CommandLine>(parsed);
    surroundings.json = line.has("--json");
    platform::GroupContainers::setFolder(line.value("--containers").value_or(""));
    platform::FolderLock::setPolicy(platform::FolderLock::required);
    const int status = answer(line, surroundings);
    out.flush();
    if (status == Done && !out)
        return failed(surroundings, "standard output: it cannot be written");
    return status;
}

} // namespace bridge

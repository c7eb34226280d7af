#include "bridge/Run.h"

#include "bridge/Commands.h"
#include "bridge/Update.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/CommandLine.h"

#include <algorithm>
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
    {"--help", "", "print this"},
};

struct Command {
    const char* name;
    const char* operand; // its name, if there is one
    const char* meaning;
    int (*perform)(Surroundings& surroundings);
};

constexpr Command commands[] = {
    {"sources", "", "list files of finance programs that can be connected", listSources},
    {"connect", "FILE", "show the plans of a file", connectFile},
    {"disconnect", "FILE", "show them no longer", disconnectFile},
    {"update", "", "read the connected files, take what was done in the panel, and publish", update},
    {"status", "", "tell what is connected, read and shown", showStatus},
    {"pending", "", "list what was paid in the panel and is not yet entered in its program", showPending},
    {"undo", "", "take back the last thing done in the panel that is not yet entered", undo},
    {"export", "FILE", "print the pending payments of a KMyMoney file, as OFX", exportPayments},
    {"open", "URL", "open what the panel asks for in its program", openUrl},
};

std::string helpText() {
    std::vector<platform::HelpLine> lines;
    for (const Command& command : commands)
        lines.push_back(
            {std::string(command.name) + (*command.operand ? " " : "") + command.operand, command.meaning});
    const std::vector<platform::HelpLine> ofOptions = platform::helpLines(options);
    lines.insert(lines.end(), ofOptions.begin(), ofOptions.end());
    return "korvel-today-bridge [--containers DIR] COMMAND\n\n" + platform::helpInColumns(lines) +
           "\nExit status: 0 done, 1 the thing asked for failed, 2 wrong usage.\n";
}

int perform(const std::vector<std::string>& words, Surroundings& surroundings) {
    if (words.empty())
        return misused(surroundings, "a command is missing");
    const auto* const command =
        std::find_if(std::begin(commands), std::end(commands),
                     [&](const Command& known) { return known.name == words.front(); });
    if (command == std::end(commands))
        return misused(surroundings, "unknown command " + words.front());
    const bool takesOperand = *command->operand != '\0';
    if (words.size() != (takesOperand ? 2U : 1U))
        return misused(surroundings, words.front() + (takesOperand ? " takes one " : " takes no operand") +
                                         command->operand);
    surroundings.operands.assign(words.begin() + 1, words.end());
    return command->perform(surroundings);
}

} // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err, Programs programs,
        const Icons& icons) {
    Surroundings surroundings{out, err, programs, icons, false, {}};
    const auto parsed = platform::parseCommandLine(options, platform::Operands::Anywhere, arguments);
    if (const auto* error = std::get_if<platform::CommandLineError>(&parsed))
        return misused(surroundings, error->message);
    const auto& line = std::get<platform::CommandLine>(parsed);
    surroundings.json = line.has("--json");
    platform::GroupContainers::setFolder(line.value("--containers").value_or(""));
    platform::FolderLock::setPolicy(platform::FolderLock::required);
    int status = Done;
    if (line.has("--help"))
        out << helpText();
    else if (line.has("--version"))
        out << "korvel-today-bridge " KORVEL_VERSION "\n";
    else
        status = perform(line.operands, surroundings);
    out.flush();
    if (status == Done && !out)
        return failed(surroundings, "standard output: it cannot be written");
    return status;
}

} // namespace bridge

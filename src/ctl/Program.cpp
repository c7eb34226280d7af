#include "ctl/Program.h"

#include "ctl/Commands.h"
#include "ctl/HelpCommand.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/GroupContainers.h"

#include <ostream>

namespace ctl {

namespace {

int answer(const Options& options, Streams& streams) {
    if (options.help)
        return help(options, streams);
    if (options.version) {
        streams.out << "korvel-todayctl " KORVEL_VERSION " (" << fullEditionGroupIdentifier << ")\n";
        return Done;
    }
    const auto way = platform::wayOf(commandTable(), options.line);
    if (const auto* error = std::get_if<platform::CommandLineError>(&way))
        return misused(streams, error->place, error->message);
    return commands()[std::get<std::size_t>(way)].perform(options, streams);
}

} // namespace

int run(const std::vector<std::string>& arguments, Streams& streams) {
    const auto options = parseOptions(arguments);
    if (const auto* error = std::get_if<platform::CommandLineError>(&options))
        return misused(streams, error->place, error->message);
    platform::GroupContainers::setFolder(std::get<Options>(options).containers);
    platform::FolderLock::setPolicy(platform::FolderLock::required);
    const int status = answer(std::get<Options>(options), streams);
    streams.out.flush();
    if (status == Done && !streams.out)
        return failed(streams, "standard output", "it cannot be written");
    return status;
}

} // namespace ctl

#include "ctl/HelpCommand.h"

#include "ctl/Commands.h"

#include <ostream>

namespace ctl {

int help(const Options& options, Streams& streams) {
    const auto text = platform::helpOf(commandTable(), options.line);
    if (const auto* error = std::get_if<platform::CommandLineError>(&text))
        return misused(streams, error->place, error->message);
    streams.out << std::get<std::string>(text);
    return Done;
}

} // namespace ctl

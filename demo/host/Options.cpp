#include "host/Options.h"

namespace host {

namespace {

std::vector<std::string> wordsFrom(const std::vector<std::string>& arguments, std::size_t first) {
    return {arguments.begin() + static_cast<std::ptrdiff_t>(first), arguments.end()};
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
    if (arguments.empty())
        return {};
    if (arguments[0] == "--help")
        return {Task::Help, {}};
    if (arguments[0] == "--deliver" || arguments[0] == "--window") {
        if (arguments.size() != 3)
            return {};
        return {arguments[0] == "--window" ? Task::Window : Task::Deliver, wordsFrom(arguments, 1)};
    }
    if (arguments[0].starts_with('-') || arguments.size() < 2)
        return {};
    return {Task::Session, wordsFrom(arguments, 0)};
}

const char* helpText() {
    return R"(Stands in for the finance application beside the panel: shows what the panel asks it to open, and what
its action log holds.

Usage: korvel-demo-host CONTAINERS PANEL [OPTION...]

Starts the program PANEL with "--containers CONTAINERS" and the options, and ends with it and with its exit
status. Both spellings of the URL scheme lead here in the panel's environment only; nothing is registered
elsewhere, and nothing is left when it ends.

Closing the window leaves the panel alone; the next request brings it back, as it would start the real
application. Closing the panel ends both.

Each request, and each record that the log gains, is one line on standard output, fields parted by tabs:
  request  URL  [PLAN  DATE]     the plan and the date that the settings name, where the URL asks for one
  logged   RECORD
  log      COUNT                 the log was emptied or written anew
)";
}

const char* usageText() {
    return "korvel-demo-host: usage: korvel-demo-host CONTAINERS PANEL [OPTION...] | --help\n";
}

} // namespace host

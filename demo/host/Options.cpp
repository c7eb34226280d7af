#include "host/Options.h"

#include "platform/system/CommandLine.h"

namespace host {

namespace {

// The window and the delivery are for the session alone and are not in the help text.
constexpr platform::CommandLineOption options[] = {
    {"--deliver", "", "hands a URL to the window"},
    {"--window", "", "shows the window"},
    {"--help", "", "prints the help text"},
};

Task taskOf(const platform::CommandLine& line) {
    if (line.has("--help"))
        return Task::Help;
    const bool delivers = line.has("--deliver");
    const bool showsWindow = line.has("--window");
    if (!delivers && !showsWindow)
        return line.operands.size() < 2 ? Task::Misused : Task::Session;
    if (delivers == showsWindow || line.operands.size() != 2)
        return Task::Misused;
    return delivers ? Task::Deliver : Task::Window;
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
    const auto parsed = platform::parseCommandLine(options, platform::Operands::AfterOptions, arguments);
    const auto* line = std::get_if<platform::CommandLine>(&parsed);
    const Task task = line ? taskOf(*line) : Task::Misused;
    if (task == Task::Misused || task == Task::Help)
        return {task, {}};
    return {task, line->operands};
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

#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"
#include "platform/system/CommandTable.h"

#include <span>

namespace ctl {

// One way in which a command is used, and what carries it out.
struct Command : platform::CommandWay {
    int (*perform)(const Options&, Streams&);
};

[[nodiscard]] std::span<const Command> commands();

// The same for help texts and the check of a command line.
[[nodiscard]] platform::CommandTable commandTable();

} // namespace ctl

#pragma once

#include "center/SingleInstance.h"
#include "channel/Message.h"

#include <optional>
#include <string>

namespace center {

// What a start of the program is asked for.
struct Start {
    channel::Command command;
    // The folder of the containers that it was given; empty for the one that the environment names. The
    // centre of a folder that was given has nothing to do with the user's own one.
    std::string containers;
};

// The names of the files by which the starts with a folder find each other.
[[nodiscard]] std::string instanceName(const std::string& containers);

// Asks the centre that runs already, if one does: the exit status of this start. Absent where this start is
// to be the centre. Needs no application, and so no display.
[[nodiscard]] std::optional<int> askRunning(SingleInstance& instance, const Start& start);

// Runs the centre until it is asked to quit. Returns the exit status.
int runCenter(SingleInstance& instance, const Start& start);

} // namespace center

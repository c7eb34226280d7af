#pragma once

#include "bridge/Configuration.h"
#include "bridge/Database.h"
#include "bridge/Overlay.h"
#include "bridge/Report.h"
#include "platform/storage/FolderLock.h"

#include <optional>
#include <string>
#include <vector>

namespace bridge {

// update: reads the connected files, takes the action log and publishes the feed. A file that cannot be read
// is told of, and what was read of it before stays shown; the others are published, and the status is 1.
[[nodiscard]] int update(Surroundings& surroundings);

// What all commands that look at plans begin with.
struct OpenedState {
    std::optional<platform::FolderLock> turn; // of a command that changes anything
    ConfigurationFile file;
    Database database;

    [[nodiscard]] const Configuration& configuration() const { return file.configuration; }
};

// Opens settings and database as they stand, for a command that changes neither. Or says why not.
[[nodiscard]] bool openState(Surroundings& surroundings, OpenedState& state);

// The same for a command that changes them: it waits for its turn first, so that it begins with what the
// process before it has left, and has the turn as long as the state lasts.
[[nodiscard]] bool openStateInTurn(Surroundings& surroundings, OpenedState& state);

[[nodiscard]] std::string keyPrefix(const ConnectedFile& file);

// Reads the files and keeps what was read, as one transaction. Whether all were sound.
[[nodiscard]] bool readFiles(Surroundings& surroundings, OpenedState& state, std::vector<FilePlans>& result);

// The plans of the connected files as they were read last.
[[nodiscard]] std::vector<FilePlans> keptPlans(OpenedState& state);

// Whether an action was so long ago that the user is told that it is not yet entered.
[[nodiscard]] bool isReminded(const Action& action, const Configuration& configuration);

// Takes the action log of a container whose feed is ours, ends actions by what the files list, and publishes.
// Payments of files that were read now are entered into their journals.
[[nodiscard]] int takeAndPublish(Surroundings& surroundings, OpenedState& state,
                                 std::vector<FilePlans> files);

} // namespace bridge

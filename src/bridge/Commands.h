#pragma once

#include "bridge/Report.h"

namespace bridge {

// The commands beside update (Update.h). Each returns the exit status.

[[nodiscard]] int listSources(Surroundings& surroundings);    // sources
[[nodiscard]] int connectFile(Surroundings& surroundings);    // connect FILE
[[nodiscard]] int disconnectFile(Surroundings& surroundings); // disconnect FILE
[[nodiscard]] int showStatus(Surroundings& surroundings);     // status
[[nodiscard]] int showPending(Surroundings& surroundings);    // pending
[[nodiscard]] int undo(Surroundings& surroundings);           // undo
[[nodiscard]] int exportPayments(Surroundings& surroundings); // export FILE
[[nodiscard]] int openUrl(Surroundings& surroundings);        // open URL

} // namespace bridge

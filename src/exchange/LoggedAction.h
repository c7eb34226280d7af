#pragma once

#include "exchange/ActionLog.h"
#include "exchange/FeedRecord.h"
#include "model/TodayTransaction.h"

#include <cstdint>
#include <optional>
#include <system_error>

// Paid, Later and Delete in the two files: first the account's log, then the feed. Faults are values: the
// widget ends over them, the companion reports them.
namespace exchange {

// What became of the two writes. Each error is that of the write itself, not of a later look at the file,
// which the host application may have changed by then (see platform::isMade).
struct LoggedAction {
    std::error_code log;  // the action is logged unless this says that it is not
    std::error_code feed; // the feed is rewritten unless this says that it is not, or there is a fault
    std::optional<FeedFault>
        fault; // why the feed could not be rewritten, whether or not the action is logged
};

// Appends the action to the log of the current account, whose folder is made if it is missing, and rewrites
// the feed, whatever became of the log. The container is looked up for each of the two; without one the fault
// is that of an unreadable feed. The caller has locked the container, if anyone does (see
// platform::FolderLock).
[[nodiscard]] LoggedAction logAction(ActionType type, const TodayTransaction& item, std::int64_t parameter,
                                     UnreadableLog unreadable);

} // namespace exchange

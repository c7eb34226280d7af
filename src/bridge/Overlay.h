#pragma once

#include "bridge/Database.h"
#include "bridge/plans/Plan.h"

#include <string>
#include <vector>

// What the user did, laid over what the files say.
namespace bridge {

// The plans of a connected file, read now or kept from its last sound reading.
struct FilePlans {
    std::string prefix; // of its plans' keys in the feed: "PROGRAM:FILE:"
    std::string path;
    bool isFresh = false; // read now
    Day last;             // occurrences up to this day are listed
    std::vector<Plan> plans;
};

// An occurrence that is shown.
struct ShownOccurrence {
    std::string plan; // its key in the feed
    const Plan* details = nullptr;
    Occurrence occurrence;
    Day shown; // the day on which it is shown as due
};

// The numbers of the open actions that have come to their end: the file, read now, no longer lists the
// occurrence, because the user has entered it there or it has passed. An action on all later occurrences has
// no end.
[[nodiscard]] std::vector<std::int64_t> endedActions(const std::vector<FilePlans>& files,
                                                     const std::vector<Action>& open);

// The occurrences of all files, in the order of the files, without those that were paid or deleted. One that
// was postponed is shown that many days after the day of the last such action; the days are added as a
// calendar counts them, across the ends of months.
[[nodiscard]] std::vector<ShownOccurrence> shownOccurrences(const std::vector<FilePlans>& files,
                                                            const std::vector<Action>& open);

// A paid occurrence that its file still lists.
struct PendingOccurrence {
    const Action* action = nullptr;
    const FilePlans* file = nullptr;
    const Plan* details = nullptr;
};

// In the order in which they were paid.
[[nodiscard]] std::vector<PendingOccurrence> pendingOccurrences(const std::vector<FilePlans>& files,
                                                                const std::vector<Action>& open);

} // namespace bridge

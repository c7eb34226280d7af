#pragma once

#include "bridge/Update.h"

#include <string>
#include <vector>

namespace bridge {

// Payments that are entered into the journals of connected files (PaidJournal.h), where their program takes
// them so and the user's journal includes ours.

// Makes the journals that are absent, and takes back what an ended process has left unchecked in them.
// Whether all are sound.
[[nodiscard]] bool prepareJournals(Surroundings& surroundings, const Configuration& configuration);

// Enters the open payments whose occurrences the files, read now, still list; they list them no longer then,
// and the actions have come to their end. One that the program refuses is taken back and told of, and is
// never tried again: that would change the journal with each update, and whoever watches it would ask for the
// next one. Whether none failed.
[[nodiscard]] bool enterPayments(Surroundings& surroundings, OpenedState& state,
                                 std::vector<FilePlans>& files, const std::vector<Action>& open);

// Whether a journal of ours has the payment of an action.
[[nodiscard]] bool isInJournal(const Surroundings& surroundings, const Configuration& configuration,
                               const Action& action);

// Takes the payment of an action out of the journal that has it. Returns a sentence, or an empty text.
[[nodiscard]] std::string removeFromJournal(const Surroundings& surroundings,
                                            const Configuration& configuration, const Action& action);

// The journal that a file should include and does not, or an empty text.
[[nodiscard]] std::string journalToInclude(const Surroundings& surroundings, const ConnectedFile& file);

} // namespace bridge

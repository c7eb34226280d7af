#pragma once

#include "bridge/plans/Plan.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace bridge {

// A journal of ours that holds a transaction for each paid occurrence, with the tags `plan:` and `paid-of:`.
// The user includes it in the journal of the plans. Its texts are UTF-8; each transaction begins after an
// empty line.

// Of a journal without payments. It says how its amounts are written, whatever the journal around it says.
extern const std::string_view emptyPaidJournal;

// The transaction of a payment.
[[nodiscard]] std::string textOfPayment(const Entry& entry, Day nominal, Day paid);

// The text without the payment of an occurrence. Absent if the text has no payment of that occurrence. The
// key is the plan's key in the feed (portableKey).
[[nodiscard]] std::optional<std::string> withoutPayment(const std::string& text, std::string_view key,
                                                        Day nominal);

// Makes the file where it is absent. A change that a process has begun and not checked is taken back. Returns
// a sentence that names the file where that failed, otherwise an empty text.
[[nodiscard]] std::string preparePaidJournal(const std::string& path);

// What the program has against the journals now, empty where it accepts them.
using JournalCheck = std::function<std::string()>;

// Replaces the text, and takes it back unless it passes the check. The file is replaced as a whole, so that
// nobody ever reads a part of a transaction. The text before stays beside it: as PATH.unchecked until the
// check has passed, for a process that ends in between, then as PATH~. Returns a sentence, or an empty text.
[[nodiscard]] std::string changePaidJournal(const std::string& path, std::string_view text,
                                            const JournalCheck& check);

} // namespace bridge

#pragma once

#include "model/TodayTransaction.h"

#include <cstdint>
#include <string>
#include <system_error>

namespace exchange {

// What an action is in the log. The numbers are the log's.
enum class ActionType : std::int64_t { Paid = 1, Later = 2, Delete = 3 };

// What becomes of a log that is there and cannot be read for want of rights or memory, say. One that can be
// read and holds no array is started anew in any case.
enum class UnreadableLog {
    StartsAnew, // the widget's way: its records are lost
    Stays       // the error is that of reading it
};

// Appends a record of an action to the log in a file: its type, the transaction's plan key and date, and the
// parameter (days from today for Later; 1 for Delete of all later occurrences; otherwise 0). What is in the
// log already is never looked at and stays. A file that is absent, unreadable or no array becomes a log of
// the one record. The new log is there whole or not at all: the old file stays where it cannot be written, or
// holds what the XML form has no place for (StorageError::NoXmlForm); see platform::replaceFile for the
// errors.
[[nodiscard]] std::error_code appendToActionLog(const std::string& log, ActionType type,
                                                const TodayTransaction& item, std::int64_t parameter,
                                                UnreadableLog unreadable);

} // namespace exchange

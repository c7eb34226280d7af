#pragma once

#include "exchange/FeedRecord.h"
#include "model/TodayTransaction.h"
#include "platform/plist/Value.h"

#include <cstdint>
#include <variant>

// What a logged action does to the feed.
namespace exchange {

// The codes of the action log.
enum class ActionType : std::int64_t { Paid = 1, Later = 2, Delete = 3 };

// The records that stay after an action on a transaction, in their order. Every record is looked at for its
// "planpk", those of the same plan for their "date", and nothing else. Of the same plan and the very same
// date: Later moves the record to the start of the day `parameter` days after today and keeps its other
// keys; Paid and Delete drop it. Delete with a parameter of 1 also drops the plan's records that are not
// earlier. Texts and dates are compared exactly; a NaN equals no date and is never earlier.
[[nodiscard]] std::variant<platform::plist::Array, FeedFault>
rewriteRecords(const platform::plist::Array& records, ActionType type, const TodayTransaction& item,
               std::int64_t parameter);

} // namespace exchange

#pragma once

#include "exchange/ActionLog.h"
#include "exchange/FeedRecord.h"
#include "model/TodayTransaction.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// What a logged action does to the feed.
namespace exchange {

struct RewrittenFeed {
    std::optional<FeedFault> fault;
    // The feed in the XML form. Nothing after a fault, and if a record that stays holds what the
    // form cannot (a null or a set, or a key or "planpk" with a lone surrogate).
    std::optional<std::string> bytes;
};

// The feed after an action on a transaction, its records in their order. Every record is looked at for its
// "planpk", those of the same plan for their "date", and nothing else. Of the same plan and the very same
// date: Later moves the record to the start of the day `parameter` days after today and keeps its other keys;
// Paid and Delete drop it. Delete with a parameter of 1 also drops the plan's records that are not earlier.
// Strings and dates are compared exactly; a NaN equals no date and is never earlier. Bytes that hold no array
// are a fault.
[[nodiscard]] RewrittenFeed rewriteFeed(std::string_view bytes, ActionType type, const TodayTransaction& item,
                                        std::int64_t parameter);

} // namespace exchange

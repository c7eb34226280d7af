#pragma once

#include "exchange/FeedRecord.h"
#include "model/TodayTransaction.h"
#include "platform/plist/Writer.h"

#include <cstdint>
#include <optional>
#include <string_view>

// What a logged action does to the feed.
namespace exchange {

// The codes of the action log.
enum class ActionType : std::int64_t { Paid = 1, Later = 2, Delete = 3 };

struct FeedRewriting {
    std::optional<FeedFault> fault;
    // Whether the sink was given all. Otherwise there was a fault, a kept record holds what the XML form
    // cannot (a null or a set), or the sink refused; what it has is to be forgotten.
    bool isWritten = false;
};

// Writes the XML form of the records that stay after an action on a transaction, in their order. Every record
// is looked at for its "planpk", those of the same plan for their "date", and nothing else. Of the same plan
// and the very same date: Later moves the record to the start of the day `parameter` days after today and
// keeps its other keys; Paid and Delete drop it. Delete with a parameter of 1 also drops the plan's records
// that are not earlier. Texts and dates are compared exactly; a NaN equals no date and is never earlier.
// Bytes that hold no array are a fault.
[[nodiscard]] FeedRewriting rewriteFeed(std::string_view bytes, ActionType type, const TodayTransaction& item,
                                        std::int64_t parameter, const platform::plist::Sink& sink);

} // namespace exchange

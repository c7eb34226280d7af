#pragma once

#include "exchange/FeedRecord.h"
#include "model/TodayTransaction.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The one way from the feed to transactions, which answers a fault with a value: the widget ends over it, the
// companion reports it.
namespace exchange {

using FeedReading = std::variant<std::vector<TodayTransactionPtr>, FeedFault>;

// The last moment that the feed shows, in seconds since 1970-01-01 00:00 UTC: one second before the start of
// the day that lies a number of days and one more after today. The day wraps within the month, on purpose:
// on a month's last day a count of 0 gives the end of the day before the month began.
[[nodiscard]] std::variant<double, FeedFault> limitForDayCount(std::int64_t dayCount);

// The records of a feed's bytes that are due at or before the limit, by date: equal dates in file order, a
// NaN last. A record whose date is NaN is never past the limit. Of a record past the limit nothing but its
// date is looked at. What is no property list, or one whose root is no array, has none.
[[nodiscard]] FeedReading transactionsOfFeed(std::string_view bytes, double limit);

// The transactions of a container's feed up to the limit of a day count. No feed, an unreadable one, or one
// whose root is no array yields none. The limit is computed before the feed is read.
[[nodiscard]] FeedReading readFeed(const std::string& container, std::int64_t dayCount);

} // namespace exchange

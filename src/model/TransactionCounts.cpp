#include "model/TransactionCounts.h"

#include "platform/system/Clock.h"
#include "platform/system/CurrentTimeZone.h"
#include "platform/system/WholeSeconds.h"

TransactionCounts countsOf(const std::vector<TodayTransactionPtr>& transactions) {
    const double now = platform::Clock::current().now();
    const auto seconds = platform::wholeSeconds(now);
    const double nextDay =
        seconds ? static_cast<double>(platform::currentTimeZone().nextDateAfter(*seconds)) : now;
    TransactionCounts counts;
    for (const TodayTransactionPtr& transaction : transactions) {
        if (transaction->isOverdue()) {
            ++counts.overdue;
            continue;
        }
        ++counts.due;
        if (transaction->date < nextDay)
            ++counts.dueToday;
    }
    return counts;
}

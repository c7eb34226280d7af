#include "exchange/TodayWidgetLogic.h"

#include "exchange/FeedReader.h"
#include "platform/storage/SharedDefaults.h"
#include "platform/system/Fatal.h"

#include <utility>

std::vector<TodayTransactionPtr> TodayWidgetLogic::getTodayTransactionsArray() {
    const std::optional<std::string> container = containerFolder();
    if (!container)
        return {};
    const auto defaults = platform::SharedDefaults::open(getGroupContainerID());
    const std::int64_t dayCount = defaults ? defaults->integerForKey("notification_days_count") : 0;
    exchange::FeedReading reading = exchange::readFeed(*container, dayCount);
    if (std::holds_alternative<exchange::FeedFault>(reading))
        platform::fatal();
    return std::get<std::vector<TodayTransactionPtr>>(std::move(reading));
}

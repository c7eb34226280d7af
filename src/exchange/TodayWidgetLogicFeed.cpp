#include "exchange/TodayWidgetLogic.h"

#include "exchange/FeedReader.h"
#include "exchange/SharedSettings.h"
#include "platform/system/Fatal.h"

#include <utility>

std::vector<TodayTransactionPtr> TodayWidgetLogic::getTodayTransactionsArray() {
    const std::optional<std::string> container = containerFolder();
    if (!container)
        return {};
    exchange::FeedReading reading = exchange::readFeed(*container, exchange::notificationDayCount());
    if (std::holds_alternative<exchange::FeedFault>(reading))
        platform::fatal();
    return std::get<std::vector<TodayTransactionPtr>>(std::move(reading));
}

#include "exchange/TodayWidgetLogic.h"

#include "exchange/SharedSettings.h"
#include "model/GroupIdentifiers.h"
#include "model/HostUrls.h"
#include "platform/storage/GroupContainers.h"

namespace {

// How many rows the list has unless it is hidden. Of "show_transactions_count" only the sign counts, on
// purpose.
constexpr std::int64_t shownCount = 5;

} // namespace

std::string TodayWidgetLogic::getGroupContainerID() {
    return std::string(fullEditionGroupIdentifier);
}

std::optional<std::string> TodayWidgetLogic::containerFolder() {
    return platform::GroupContainers::containerForGroup(getGroupContainerID());
}

std::string TodayWidgetLogic::accountPk() {
    return exchange::accountKey();
}

QString TodayWidgetLogic::getUrlScheme() {
    return QString::fromLatin1(model::hostUrlScheme);
}

TodayTransactionsCount TodayWidgetLogic::getTransactionsCountToShow() {
    const auto defaults = exchange::openSharedSettings();
    if (!defaults || defaults->integerForKey("show_transactions_count") < 0)
        return TodayTransactionsCount::None();
    return TodayTransactionsCount::Custom(shownCount);
}

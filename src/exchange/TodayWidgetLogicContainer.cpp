#include "exchange/TodayWidgetLogic.h"

#include "exchange/GroupIdentifiers.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/SharedDefaults.h"

namespace {

// The folder of those accounts that the host application has given no key.
constexpr const char* accountWithoutKey = "-";

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
    auto defaults = platform::SharedDefaults::open(getGroupContainerID());
    if (!defaults)
        return accountWithoutKey;
    defaults->synchronize();
    return defaults->stringForKey("account_pk").value_or(accountWithoutKey);
}

QString TodayWidgetLogic::getUrlScheme() {
    return QStringLiteral("korvelWidget");
}

TodayTransactionsCount TodayWidgetLogic::getTransactionsCountToShow() {
    const auto defaults = platform::SharedDefaults::open(getGroupContainerID());
    if (!defaults || defaults->integerForKey("show_transactions_count") < 0)
        return TodayTransactionsCount::None();
    return TodayTransactionsCount::Custom(shownCount);
}

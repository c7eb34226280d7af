#include "exchange/TodayWidgetLogic.h"

#include "exchange/HostLaunch.h"
#include "exchange/LoggedAction.h"
#include "model/HostUrls.h"
#include "platform/storage/FolderLock.h"
#include "platform/system/Fatal.h"

#include <optional>
#include <string>

using exchange::ActionType;

void TodayWidgetLogic::performTransactionAction(const TodayTransaction& transaction,
                                                TodayTransactionAction action,
                                                platform::ExtensionContext* /*context*/) {
    if (action.isLater())
        saveActionType(static_cast<std::int64_t>(ActionType::Later), transaction, action.value());
    else if (action.isDelete())
        saveActionType(static_cast<std::int64_t>(ActionType::Delete), transaction, action.value());
    else if (action.isPaid())
        saveActionType(static_cast<std::int64_t>(ActionType::Paid), transaction, 0);
    else
        openHost(model::editTransactionRequest, &transaction);
}

void TodayWidgetLogic::performNewTransaction(platform::ExtensionContext* /*context*/) {
    openHost(model::newTransactionRequest, nullptr);
}

void TodayWidgetLogic::performAllTransactions(platform::ExtensionContext* /*context*/) {
    openHost(model::allTransactionsRequest, nullptr);
}

// Writes that fail are soft and silent: an action that cannot be logged is carried out all the same. Whatever
// breaks the feed's rewriting ends the widget with the action logged.
void TodayWidgetLogic::saveActionType(std::int64_t type, const TodayTransaction& item,
                                      std::int64_t parameter) {
    const std::optional<std::string> container = containerFolder();
    if (!container)
        platform::fatal();
    const platform::FolderLock lock(*container);
    if (exchange::logAction(static_cast<ActionType>(type), item, parameter,
                            exchange::UnreadableLog::StartsAnew)
            .fault)
        platform::fatal();
}

void TodayWidgetLogic::openHost(const char* request, const TodayTransaction* transaction) {
    static_cast<void>(exchange::leaveRequest(request, transaction));
    static_cast<void>(exchange::openHost(request)); // also where the request could not be left
}

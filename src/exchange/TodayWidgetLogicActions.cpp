#include "exchange/TodayWidgetLogic.h"

#include "exchange/ActionLog.h"
#include "exchange/FeedRewriter.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "exchange/Text.h"
#include "platform/storage/Files.h"
#include "platform/system/Fatal.h"
#include "platform/system/Workspace.h"

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
        openHost("tw_edit_transaction", &transaction);
}

void TodayWidgetLogic::performNewTransaction(platform::ExtensionContext* /*context*/) {
    openHost("tw_new_transaction", nullptr);
}

void TodayWidgetLogic::performAllTransactions(platform::ExtensionContext* /*context*/) {
    openHost("tw_all_transactions", nullptr);
}

void TodayWidgetLogic::saveActionType(std::int64_t type, const TodayTransaction& item,
                                      std::int64_t parameter) {
    const std::optional<std::string> container = containerFolder();
    if (!container)
        platform::fatal();
    const std::string folder = exchange::accountFolder(*container, accountPk());
    // These failures are soft and silent: an action that cannot be logged is carried out all the same.
    if (!platform::fileExists(folder))
        static_cast<void>(platform::makeFolders(folder));
    exchange::appendToActionLog(exchange::actionLogFile(folder), static_cast<ActionType>(type), item,
                                parameter);

    // The container is looked up again, as at every use: the log may have taken its time. Whatever breaks
    // from here on, the action is logged.
    const std::optional<std::string> containerNow = containerFolder();
    if (!containerNow)
        platform::fatal();
    const std::string feed = exchange::feedFile(*containerNow);
    const std::optional<std::string> bytes = platform::readFile(feed);
    if (!bytes)
        platform::fatal();
    const exchange::RewrittenFeed rewritten =
        exchange::rewriteFeed(*bytes, static_cast<ActionType>(type), item, parameter);
    if (rewritten.fault)
        platform::fatal();
    if (rewritten.bytes)
        static_cast<void>(platform::replaceFile(feed, *rewritten.bytes));
}

// Leaves the request in the shared settings, which the URL cannot carry, and opens the host application even
// where there are none.
void TodayWidgetLogic::openHost(const char* request, const TodayTransaction* transaction) {
    auto defaults = exchange::openSharedSettings();
    if (defaults) {
        if (transaction) {
            defaults->setString("edit_transaction_plan_pk",
                                exchange::utf8FromText(transaction->planPrimaryKey));
            defaults->setDouble("edit_transaction_date", transaction->date);
        }
        defaults->setString("url_string", request);
        defaults->synchronize();
    }
    platform::Workspace::openUrl(getUrlScheme() + QLatin1String("://") + QLatin1String(request));
}

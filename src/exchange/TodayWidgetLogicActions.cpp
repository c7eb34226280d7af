#include "exchange/TodayWidgetLogic.h"

#include "exchange/FeedRewriter.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "exchange/Text.h"
#include "platform/storage/FileReplacement.h"
#include "platform/storage/Files.h"
#include "platform/system/Fatal.h"
#include "platform/system/Workspace.h"

#include <utility>

namespace plist = platform::plist;

using exchange::ActionType;

namespace {

plist::Value logRecord(std::int64_t type, const TodayTransaction& item, std::int64_t parameter) {
    plist::Dictionary record;
    record.set("type", plist::Value(type));
    record.set("pk", plist::Value(exchange::utf8FromText(item.planPrimaryKey)));
    record.set("date", plist::Value(item.date));
    record.set("param", plist::Value(parameter));
    return plist::Value(std::move(record));
}

// The log's older records are never looked at and go back as they are. A failure is soft: the action is then
// not logged, and nobody is told.
void appendToLog(const std::string& accountFolder, const plist::Value& record) {
    if (!platform::fileExists(accountFolder))
        static_cast<void>(platform::makeFolders(accountFolder));
    const std::string log = exchange::actionLogFile(accountFolder);
    exchange::appendToArray(log, record);
}

// The new feed, in pieces, beside the old one until it is whole. A fault leaves the old one and nothing
// beside it, before anything ends over it.
std::optional<exchange::FeedFault> replaceFeed(const std::string& feed, const std::string& bytes,
                                               ActionType type, const TodayTransaction& item,
                                               std::int64_t parameter) {
    platform::FileReplacement file(feed);
    const exchange::FeedRewriting rewriting = exchange::rewriteFeed(
        bytes, type, item, parameter, [&](std::string_view piece) { return file.append(piece); });
    if (rewriting.isWritten)
        static_cast<void>(file.finish());
    return rewriting.fault;
}

// Fatal where the feed cannot be read or breaks its layout; a failure to write it is soft.
void rewriteFeed(const std::string& feed, ActionType type, const TodayTransaction& item,
                 std::int64_t parameter) {
    const std::optional<std::string> bytes = platform::readFile(feed);
    if (!bytes)
        platform::fatal();
    if (replaceFeed(feed, *bytes, type, item, parameter))
        platform::fatal();
}

} // namespace

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
    appendToLog(exchange::accountFolder(*container, accountPk()), logRecord(type, item, parameter));

    // Looked up again, as at every use: the log may have taken its time. Whatever breaks from here on, the
    // action is logged.
    const std::optional<std::string> containerNow = containerFolder();
    if (!containerNow)
        platform::fatal();
    rewriteFeed(exchange::feedFile(*containerNow), static_cast<ActionType>(type), item, parameter);
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

#include "ctl/ActCommand.h"

#include "ctl/Host.h"
#include "ctl/Moments.h"
#include "exchange/FeedRewriter.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "exchange/Text.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/storage/Files.h"
#include "platform/system/NumberText.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace ctl {

namespace plist = platform::plist;

using Action = TodayTransactionAction;

namespace {

// The action that the words after the plan and the date name, if they name one.
std::optional<Action> actionOf(const std::vector<std::string>& words) {
    const std::string& name = words[3];
    if (name == "later" && words.size() == 5) {
        const auto days = platform::numberFromText<std::int64_t>(words[4]);
        return days ? std::optional(Action::Later(*days)) : std::nullopt;
    }
    if (words.size() != 4)
        return std::nullopt;
    if (name == "paid")
        return Action::Paid();
    if (name == "delete")
        return Action::Delete(false);
    if (name == "delete-future")
        return Action::Delete(true);
    return name == "info" ? std::optional(Action::Info()) : std::nullopt;
}

TodayTransactionPtr findTransaction(const std::vector<TodayTransactionPtr>& transactions,
                                    const std::string& planKey, double date) {
    const QString key = exchange::textFromUtf8(planKey);
    const auto found = std::find_if(transactions.begin(), transactions.end(), [&](const auto& transaction) {
        return transaction->planPrimaryKey == key && transaction->date == date;
    });
    return found == transactions.end() ? nullptr : *found;
}

std::size_t recordsIn(const std::string& file) {
    return exchange::arrayFromFile(file).value_or(plist::Array()).size();
}

// The bytes that the feed must have after a logged action, or the fault at which the widget would end.
exchange::RewrittenFeed expectedFeed(const TodayTransaction& transaction, Action action) {
    const std::optional<std::string> before = platform::readFile(exchange::feedFile(containerPath()));
    if (!before)
        return {exchange::FeedFault{exchange::FeedFault::What::Unreadable, 0, {}}, std::nullopt};
    using exchange::ActionType;
    const ActionType type = action.isPaid()    ? ActionType::Paid
                            : action.isLater() ? ActionType::Later
                                               : ActionType::Delete;
    return exchange::rewriteFeed(*before, type, transaction, action.value());
}

// The widget ignores a file that cannot be written. The command reports it.
int performLogged(const TodayTransaction& transaction, Action action, Streams& streams) {
    const std::string feed = exchange::feedFile(containerPath());
    const std::string folder = exchange::accountFolder(containerPath(), exchange::accountKey());
    const std::string log = exchange::actionLogFile(folder);
    const exchange::RewrittenFeed expected = expectedFeed(transaction, action);
    if (expected.fault)
        return failed(streams, feed, exchange::describe(*expected.fault));

    const std::size_t loggedBefore = recordsIn(log);
    TodayWidgetLogic::performTransactionAction(transaction, action, nullptr);
    if (recordsIn(log) != loggedBefore + 1)
        return failed(streams, log, "the action could not be logged");
    if (!expected.bytes || platform::readFile(feed) != expected.bytes)
        return failed(streams, feed, "the feed could not be rewritten; the action is logged");
    return Done;
}

} // namespace

int act(const Options& options, Streams& streams) {
    const auto& words = options.words;
    const std::optional<Action> action = words.size() > 3 ? actionOf(words) : std::nullopt;
    if (!action)
        return misused(streams, "act takes PLANPK DATE and paid, later DAYS, delete, delete-future or info");
    const std::optional<double> date = momentOfText(words[2]);
    if (!date)
        return misused(streams, words[2] + " is no date");

    const exchange::FeedReading reading = readWidgetsList();
    const std::string feed = exchange::feedFile(containerPath());
    if (const auto* fault = std::get_if<exchange::FeedFault>(&reading))
        return failed(streams, feed, exchange::describe(*fault));
    const auto transaction =
        findTransaction(std::get<std::vector<TodayTransactionPtr>>(reading), words[1], *date);
    if (!transaction)
        return failed(streams, feed,
                      "the widget's list has no transaction of plan " + words[1] + " at " + words[2]);
    if (*action == Action::Delete(true) && transaction->isSinglePlan)
        return failed(streams, feed,
                      "plan " + words[1] + " is a single one and has no later occurrences to delete");
    if (!action->isInfo())
        return performLogged(*transaction, *action, streams);
    TodayWidgetLogic::performTransactionAction(*transaction, *action, nullptr);
    return Done;
}

} // namespace ctl

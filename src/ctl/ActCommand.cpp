#include "ctl/ActCommand.h"

#include "ctl/Confinement.h"
#include "ctl/Host.h"
#include "ctl/Input.h"
#include "ctl/Moments.h"
#include "ctl/OpenerProcess.h"
#include "exchange/FeedRewriter.h"
#include "exchange/HostLaunch.h"
#include "exchange/LoggedAction.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "exchange/Text.h"
#include "model/HostUrls.h"
#include "model/TodayTransactionAction.h"
#include "platform/storage/Files.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/StorageError.h"
#include "platform/system/NumberText.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace ctl {

using Action = TodayTransactionAction;

namespace {

// The action that the words after the plan and the date name; none where the days are no number.
std::optional<Action> actionOf(const std::vector<std::string>& words) {
    const std::string& name = words[3];
    if (name == "later") {
        const auto days = platform::numberFromText<std::int64_t>(words[4]);
        return days ? std::optional(Action::Later(*days)) : std::nullopt;
    }
    if (name == "paid")
        return Action::Paid();
    if (name == "delete")
        return Action::Delete(false);
    if (name == "delete-future")
        return Action::Delete(true);
    return Action::Info();
}

TodayTransactionPtr findTransaction(const std::vector<TodayTransactionPtr>& transactions,
                                    const std::string& planKey, double date) {
    const QString key = exchange::textFromUtf8(planKey);
    const auto found = std::find_if(transactions.begin(), transactions.end(), [&](const auto& transaction) {
        return transaction->planPrimaryKey == key && transaction->date == date;
    });
    return found == transactions.end() ? nullptr : *found;
}

exchange::ActionType typeOf(const Action& action) {
    if (action.isPaid())
        return exchange::ActionType::Paid;
    return action.isLater() ? exchange::ActionType::Later : exchange::ActionType::Delete;
}

// The fault at which the widget would end once the action is logged.
std::optional<exchange::FeedFault> faultOfRewriting(const TodayTransaction& transaction, Action action) {
    const std::optional<std::string> bytes = platform::readFile(exchange::feedFile(containerPath()));
    if (!bytes)
        return exchange::FeedFault{exchange::FeedFault::What::Unreadable, 0, {}};
    return exchange::rewriteFeed(*bytes, typeOf(action), transaction, action.value()).fault;
}

// The widget says nothing about a file that cannot be written. The command does.
int report(const exchange::LoggedAction& action, Streams& streams) {
    const std::string feed = exchange::feedFile(containerPath());
    const std::string log =
        exchange::actionLogFile(exchange::accountFolder(containerPath(), exchange::accountKey()));
    const bool isLogged = platform::isMade(action.log);
    const bool isRewritten = platform::isMade(action.feed) && !action.fault;
    const std::string whyNotRewritten =
        action.fault ? exchange::describe(*action.fault) : action.feed.message();
    if (isLogged)
        (void)reportWrite(streams, log, action.log); // if it is not safe yet
    if (!isLogged && isRewritten)
        return failed(streams, log,
                      "the action could not be logged; the feed is rewritten: " + action.log.message());
    if (!isLogged)
        return failed(streams, log,
                      "the action could not be logged: " + action.log.message() +
                          "; nor could the feed be rewritten: " + whyNotRewritten);
    if (!isRewritten)
        return failed(streams, feed,
                      "the feed could not be rewritten; the action is logged: " + whyNotRewritten);
    return reportWrite(streams, feed, action.feed);
}

int performLogged(const TodayTransaction& transaction, Action action, Streams& streams) {
    if (const auto fault = faultOfRewriting(transaction, action))
        return failed(streams, exchange::feedFile(containerPath()), exchange::describe(*fault));
    return report(
        exchange::logAction(typeOf(action), transaction, action.value(), exchange::UnreadableLog::Stays),
        streams);
}

constexpr const char* request = model::editTransactionRequest;

// Unlike the widget, the command does not open the host for an earlier request.
int performInfo(const TodayTransaction& transaction, Streams& streams) {
    const std::error_code left = exchange::leaveRequest(request, &transaction);
    const int status = reportWrite(streams, settingsFile(), left);
    if (status != Done || exchange::openHost(request))
        return status;
    return failed(streams, "", "neither gio nor xdg-open could be started to open the host");
}

int actOn(const std::string& plan, const std::string& dateText, double date, const Action& action,
          Streams& streams) {
    // From the look at the list to the last write, so that no other action comes between.
    std::optional<platform::FolderLock> lock;
    if (!action.isInfo())
        lock.emplace(containerPath());
    if (lock && lock->error())
        return failed(streams, containerPath(), lock->error().message());
    const exchange::FeedReading reading = readWidgetsList();
    const std::string feed = exchange::feedFile(containerPath());
    if (const auto* fault = std::get_if<exchange::FeedFault>(&reading))
        return failed(streams, feed, exchange::describe(*fault));
    const auto transaction = findTransaction(std::get<std::vector<TodayTransactionPtr>>(reading), plan, date);
    if (const std::error_code error = transaction ? std::error_code() : readingError(feed))
        return failed(streams, feed, error.message());
    if (!transaction)
        return failed(streams, feed,
                      "the widget's list has no transaction of plan " + plan + " at " + dateText);
    if (action == Action::Delete(true) && transaction->isSinglePlan)
        return failed(streams, feed,
                      "plan " + plan + " is a single one and has no later occurrences to delete");
    return action.isInfo() ? performInfo(*transaction, streams)
                           : performLogged(*transaction, action, streams);
}

} // namespace

int act(const Options& options, Streams& streams) {
    const auto& words = options.line.operands;
    const std::optional<double> date = momentOfText(words[2]);
    if (!date)
        return misused(streams, options.line.placeOf(2), words[2] + " is no date");
    const std::optional<Action> action = actionOf(words);
    if (!action)
        return misused(streams, options.line.placeOf(4), words[4] + " is no whole number of days");
    std::optional<OpenerProcess> opener;
    if (streams.confine && action->isInfo())
        opener.emplace(request);
    if (!confine(streams, {{}, {containerPath()}}))
        return Failed;
    return actOn(words[1], words[2], *date, *action, streams);
}

} // namespace ctl

#include "ctl/ListCommand.h"

#include "ctl/Confinement.h"
#include "ctl/Host.h"
#include "ctl/Input.h"
#include "ctl/Json.h"
#include "ctl/Moments.h"
#include "ctl/Terminal.h"
#include "exchange/SharedFiles.h"
#include "exchange/Text.h"
#include "exchange/TodayWidgetLogic.h"

#include <algorithm>
#include <ostream>

namespace ctl {

namespace {

using Transactions = std::vector<TodayTransactionPtr>;

std::string shownText(const QString& text) {
    return terminalText(exchange::utf8FromText(text));
}

void printTable(const Transactions& transactions, std::int64_t shownCount, std::ostream& out) {
    std::size_t dateWidth = 0;
    std::size_t amountWidth = 0;
    for (const TodayTransactionPtr& transaction : transactions) {
        dateWidth = std::max(dateWidth, displayWidth(textOfMoment(transaction->date)));
        amountWidth = std::max(amountWidth, displayWidth(shownText(transaction->amount)));
    }
    for (const TodayTransactionPtr& transaction : transactions)
        out << padded(textOfMoment(transaction->date), dateWidth)
            << (transaction->isOverdue() ? "  !  " : "     ")
            << rightAligned(shownText(transaction->amount), amountWidth) << "  "
            << shownText(transaction->name) << '\n';
    out << shownCount << " of " << transactions.size() << " shown\n";
}

const char* jsonBoolean(bool value) {
    return value ? "true" : "false";
}

void printJson(const Transactions& transactions, std::int64_t shownCount, std::ostream& out) {
    out << "{\"shownCount\": " << shownCount << ", \"transactions\": [";
    const char* separator = "\n  ";
    for (const TodayTransactionPtr& transaction : transactions) {
        out << separator << "{\"name\": " << jsonString(transaction->name)
            << ", \"date\": " << jsonNumber(transaction->date)
            << ", \"imageName\": " << jsonString(transaction->imageName)
            << ", \"amount\": " << jsonString(transaction->amount)
            << ", \"isIncome\": " << jsonBoolean(transaction->isIncome)
            << ", \"isExpense\": " << jsonBoolean(transaction->isExpense)
            << ", \"planPrimaryKey\": " << jsonString(transaction->planPrimaryKey)
            << ", \"isSinglePlan\": " << jsonBoolean(transaction->isSinglePlan)
            << ", \"index\": " << transaction->index
            << ", \"isOverdue\": " << jsonBoolean(transaction->isOverdue()) << '}';
        separator = ",\n  ";
    }
    out << (transactions.empty() ? "]}\n" : "\n]}\n");
}

} // namespace

int list(const Options& options, Streams& streams) {
    if (!confine(streams, {{containerPath()}, {}}))
        return Failed;
    if (const std::error_code error = readingError(settingsFile()))
        return failed(streams, settingsFile(), error.message());
    const TodayTransactionsCount count = TodayWidgetLogic::getTransactionsCountToShow();
    const exchange::FeedReading reading = readWidgetsList();
    const std::string feed = exchange::feedFile(containerPath());
    if (const auto* fault = std::get_if<exchange::FeedFault>(&reading))
        return failed(streams, feed, exchange::describe(*fault));
    const auto& transactions = std::get<Transactions>(reading);
    if (transactions.empty())
        if (const std::error_code error = readingError(feed))
            return failed(streams, feed, error.message());
    // The widget's controller numbers its transactions in the same way.
    for (std::size_t index = 0; index < transactions.size(); ++index)
        transactions[index]->index = static_cast<std::int64_t>(index);
    const std::int64_t shown = count.shownOutOf(static_cast<std::int64_t>(transactions.size()));
    if (options.json)
        printJson(transactions, shown, streams.out);
    else
        printTable(transactions, shown, streams.out);
    return Done;
}

} // namespace ctl

#include "ctl/Commands.h"
#include "ctl/Host.h"
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

const char* jsonTruth(bool truth) {
    return truth ? "true" : "false";
}

void printJson(const Transactions& transactions, std::int64_t shownCount, std::ostream& out) {
    out << "{\"shownCount\": " << shownCount << ", \"transactions\": [";
    const char* separator = "\n  ";
    for (const TodayTransactionPtr& transaction : transactions) {
        out << separator << "{\"name\": " << jsonText(transaction->name)
            << ", \"date\": " << jsonNumber(transaction->date)
            << ", \"imageName\": " << jsonText(transaction->imageName)
            << ", \"amount\": " << jsonText(transaction->amount)
            << ", \"isIncome\": " << jsonTruth(transaction->isIncome)
            << ", \"isExpense\": " << jsonTruth(transaction->isExpense)
            << ", \"planPrimaryKey\": " << jsonText(transaction->planPrimaryKey)
            << ", \"isSinglePlan\": " << jsonTruth(transaction->isSinglePlan)
            << ", \"index\": " << transaction->index
            << ", \"isOverdue\": " << jsonTruth(transaction->isOverdue()) << '}';
        separator = ",\n  ";
    }
    out << (transactions.empty() ? "]}\n" : "\n]}\n");
}

} // namespace

int list(const Options& options, Streams& streams) {
    if (options.words.size() != 1)
        return misused(streams, "list takes no operand");
    const TodayTransactionsCount count = TodayWidgetLogic::getTransactionsCountToShow();
    const exchange::FeedReading reading = readWidgetsList();
    if (const auto* fault = std::get_if<exchange::FeedFault>(&reading))
        return failed(streams, exchange::feedFile(containerPath()), exchange::describe(*fault));
    const auto& transactions = std::get<Transactions>(reading);
    // Numbered as the widget's controller numbers its list.
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

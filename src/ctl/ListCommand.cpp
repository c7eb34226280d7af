#include "ctl/ListCommand.h"

#include "ctl/Confinement.h"
#include "ctl/Host.h"
#include "ctl/Json.h"
#include "ctl/Moments.h"
#include "ctl/Terminal.h"
#include "exchange/FeedRecord.h"
#include "exchange/Text.h"
#include "exchange/TodayWidgetLogic.h"
#include "model/TransactionCounts.h"

#include <algorithm>
#include <ostream>
#include <string_view>
#include <utility>

namespace ctl {

namespace {

using Transactions = std::vector<TodayTransactionPtr>;

std::string shownText(const QString& text) {
    return terminalText(exchange::utf8FromText(text));
}

// Names and dates as act takes them.
void printTable(const Transactions& transactions, std::int64_t shownCount, std::ostream& out) {
    std::size_t dateWidth = 0;
    std::size_t keyWidth = 0;
    std::size_t amountWidth = 0;
    for (const TodayTransactionPtr& transaction : transactions) {
        dateWidth = std::max(dateWidth, exactTextOfMoment(transaction->date).size());
        keyWidth = std::max(keyWidth, displayWidth(shownText(transaction->planPrimaryKey)));
        amountWidth = std::max(amountWidth, displayWidth(shownText(transaction->amount)));
    }
    for (const TodayTransactionPtr& transaction : transactions)
        out << padded(exactTextOfMoment(transaction->date), dateWidth)
            << (transaction->isOverdue() ? "  !  " : "     ")
            << padded(shownText(transaction->planPrimaryKey), keyWidth) << "  "
            << rightAligned(shownText(transaction->amount), amountWidth) << "  "
            << shownText(transaction->name) << '\n';
    out << shownCount << " of " << transactions.size() << " shown\n";
}

const char* jsonBoolean(bool value) {
    return value ? "true" : "false";
}

std::string_view nameOf(exchange::FeedKey key) {
    return exchange::feedKeys[static_cast<std::size_t>(key)];
}

// The transactions are whole records of the feed, as publish takes them. The overdue ones come first.
void printJson(const Transactions& transactions, std::int64_t shownCount, std::ostream& out) {
    using exchange::FeedKey;
    const TransactionCounts counts = countsOf(transactions);
    out << "{\"shownCount\": " << shownCount << ", \"overdue\": " << counts.overdue
        << ", \"dueToday\": " << counts.dueToday << ", \"due\": " << counts.due << ", \"transactions\": [";
    const char* separator = "\n  {\"";
    for (const TodayTransactionPtr& transaction : transactions) {
        const std::pair<FeedKey, std::string> values[] = {
            {FeedKey::Date, jsonNumber(transaction->date)},
            {FeedKey::Name, jsonString(transaction->name)},
            {FeedKey::Image, jsonString(transaction->imageName)},
            {FeedKey::Amount, jsonString(transaction->amount)},
            {FeedKey::Income, jsonBoolean(transaction->isIncome)},
            {FeedKey::Expense, jsonBoolean(transaction->isExpense)},
            {FeedKey::Planpk, jsonString(transaction->planPrimaryKey)},
            {FeedKey::Single, jsonBoolean(transaction->isSinglePlan)},
        };
        for (const auto& [key, value] : values) {
            out << separator << nameOf(key) << "\": " << value;
            separator = ", \"";
        }
        out << '}';
        separator = ",\n  {\"";
    }
    out << (transactions.empty() ? "]}\n" : "\n]}\n");
}

} // namespace

int list(const Options& options, Streams& streams) {
    if (!confine(streams, {{containerPath()}, {}}))
        return Failed;
    const auto reading = readSoundList();
    if (const auto* fault = std::get_if<ListFault>(&reading))
        return failed(streams, fault->file, fault->sentence);
    const auto& transactions = std::get<Transactions>(reading);
    const TodayTransactionsCount count = TodayWidgetLogic::getTransactionsCountToShow();
    const std::int64_t shown = count.shownOutOf(static_cast<std::int64_t>(transactions.size()));
    if (options.json)
        printJson(transactions, shown, streams.out);
    else
        printTable(transactions, shown, streams.out);
    return Done;
}

} // namespace ctl

#include "exchange/FeedReader.h"

#include "exchange/Days.h"
#include "exchange/SharedFiles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace exchange {

namespace plist = platform::plist;

namespace {

// In the order of the lookups that the feed's layout fixes.
TodayTransactionPtr transactionOfRecord(FeedRecord& record) {
    TodayTransaction::Values values;
    values.name = record.text(feed::name);
    values.date = record.number(feed::date);
    values.imageName = record.text(feed::image);
    values.amount = record.text(feed::amount);
    values.isIncome = record.truth(feed::income);
    values.isExpense = record.truth(feed::expense);
    values.planPK = record.text(feed::planpk);
    values.isSinglePlan = record.truth(feed::single);
    return std::make_shared<TodayTransaction>(std::move(values));
}

bool isEarlier(const TodayTransactionPtr& a, const TodayTransactionPtr& b) {
    return a->date < b->date || (std::isnan(b->date) && !std::isnan(a->date));
}

} // namespace

std::variant<double, FeedFault> limitForDayCount(std::int64_t dayCount) {
    if (dayCount == std::numeric_limits<std::int64_t>::max())
        return FeedFault{FeedFault::What::DayCountOverflow, 0, {}};
    const std::optional<double> dayAfter = startOfDayFromToday(dayCount + 1);
    if (!dayAfter)
        return FeedFault{FeedFault::What::NoDate, 0, {}};
    return *dayAfter - 1.0;
}

FeedReading transactionsOfRecords(const plist::Array& records, double limit) {
    std::vector<TodayTransactionPtr> transactions;
    for (std::size_t index = 0; index < records.size(); ++index) {
        FeedRecord record(records[index], index);
        const double date = record.number(feed::date);
        TodayTransactionPtr transaction;
        if (!record.fault() && !(limit < date))
            transaction = transactionOfRecord(record);
        if (record.fault())
            return *record.fault();
        if (transaction)
            transactions.push_back(std::move(transaction));
    }
    std::stable_sort(transactions.begin(), transactions.end(), isEarlier);
    return transactions;
}

FeedReading readFeed(const std::string& container, std::int64_t dayCount) {
    const std::variant<double, FeedFault> limit = limitForDayCount(dayCount);
    if (const auto* fault = std::get_if<FeedFault>(&limit))
        return *fault;
    const std::optional<plist::Array> records = arrayFromFile(feedFile(container));
    return transactionsOfRecords(records.value_or(plist::Array()), std::get<double>(limit));
}

} // namespace exchange

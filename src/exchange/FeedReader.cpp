#include "exchange/FeedReader.h"

#include "exchange/Days.h"
#include "exchange/SharedFiles.h"
#include "platform/plist/RecordReader.h"
#include "platform/storage/Files.h"

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
    values.name = record.text(FeedKey::Name);
    values.date = record.number(FeedKey::Date);
    values.imageName = record.text(FeedKey::Image);
    values.amount = record.text(FeedKey::Amount);
    values.isIncome = record.truth(FeedKey::Income);
    values.isExpense = record.truth(FeedKey::Expense);
    values.planPK = record.text(FeedKey::Planpk);
    values.isSinglePlan = record.truth(FeedKey::Single);
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

FeedReading transactionsOfFeed(std::string_view bytes, double limit) {
    std::vector<TodayTransactionPtr> transactions;
    std::optional<FeedFault> fault;
    plist::RecordReader reader(bytes, feedKeys);
    // After a fault the rest is read all the same: bytes that are no list have no record that could be at
    // fault.
    for (std::size_t index = 0; const plist::Record* element = reader.next(); ++index) {
        if (fault)
            continue;
        FeedRecord record(*element, index);
        const double date = record.number(FeedKey::Date);
        if (!record.fault() && !(limit < date))
            transactions.push_back(transactionOfRecord(record));
        fault = record.fault();
    }
    if (!reader.isSound())
        return std::vector<TodayTransactionPtr>();
    if (fault)
        return *fault;
    std::stable_sort(transactions.begin(), transactions.end(), isEarlier);
    return transactions;
}

FeedReading readFeed(const std::string& container, std::int64_t dayCount) {
    const std::variant<double, FeedFault> limit = limitForDayCount(dayCount);
    if (const auto* fault = std::get_if<FeedFault>(&limit))
        return *fault;
    const std::optional<std::string> bytes = platform::readFile(feedFile(container));
    if (!bytes)
        return std::vector<TodayTransactionPtr>();
    return transactionsOfFeed(*bytes, std::get<double>(limit));
}

} // namespace exchange

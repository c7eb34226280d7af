#include "model/TransactionCounts.h"
#include "support/ManualClock.h"
#include "support/Moments.h"
#include "support/RegionOverride.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using support::utc;

TransactionCounts countsOfDates(const std::vector<double>& dates) {
    std::vector<TodayTransactionPtr> transactions;
    for (const double date : dates) {
        TodayTransaction::Values values;
        values.date = date;
        transactions.push_back(std::make_shared<TodayTransaction>(values));
    }
    return countsOf(transactions);
}

TEST(TransactionCountsTest, partTheOverdueFromTheDueAndThoseOfTodayFromTheLater) {
    const support::RegionOverride region({"en_US", "UTC"});
    const support::ManualClock clock(utc(2026, 3, 10, 15));
    EXPECT_EQ(countsOfDates({}), TransactionCounts());
    EXPECT_EQ(countsOfDates({utc(2026, 3, 9), utc(2026, 3, 10, 15) - 0.5, utc(2026, 3, 10, 15),
                             utc(2026, 3, 11) - 1, utc(2026, 3, 11), utc(2026, 4, 1)}),
              (TransactionCounts{.overdue = 2, .dueToday = 2, .due = 4}));
}

TEST(TransactionCountsTest, endTheDayWhereTheZoneDoes) {
    const support::RegionOverride region({"en_US", "Asia/Tokyo"});
    const support::ManualClock clock(utc(2026, 3, 10, 14, 30)); // 23:30 there
    EXPECT_EQ(countsOfDates({utc(2026, 3, 10, 14, 45), utc(2026, 3, 10, 15)}),
              (TransactionCounts{.overdue = 0, .dueToday = 1, .due = 2}));
}

TEST(TransactionCountsTest, takeADateThatIsNoMomentForDueOnSomeDay) {
    const support::RegionOverride region({"en_US", "UTC"});
    const support::ManualClock clock(utc(2026, 3, 10, 15));
    EXPECT_EQ(countsOfDates({std::numeric_limits<double>::quiet_NaN()}),
              (TransactionCounts{.overdue = 0, .dueToday = 0, .due = 1}));
}

} // namespace

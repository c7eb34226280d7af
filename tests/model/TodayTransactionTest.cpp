#include "model/TodayTransaction.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr double tenthOfMarchSixPm = 1773165600; // 2026-03-10 18:00 UTC

TodayTransaction transactionDated(double date) {
    TodayTransaction::Values values;
    values.date = date;
    return TodayTransaction(values);
}

TEST(TodayTransactionTest, takesEachValueToItsField) {
    const TodayTransaction transaction(
        TodayTransaction::Values{QStringLiteral("Rent"), 12.5, QStringLiteral("house"),
                                 QStringLiteral("$ 900"), true, false, QStringLiteral("plan-1"), true});
    EXPECT_EQ(transaction.name, QStringLiteral("Rent"));
    EXPECT_EQ(transaction.date, 12.5);
    EXPECT_EQ(transaction.imageName, QStringLiteral("house"));
    EXPECT_EQ(transaction.amount, QStringLiteral("$ 900"));
    EXPECT_TRUE(transaction.isIncome);
    EXPECT_FALSE(transaction.isExpense);
    EXPECT_EQ(transaction.planPrimaryKey, QStringLiteral("plan-1"));
    EXPECT_TRUE(transaction.isSinglePlan);
}

TEST(TodayTransactionTest, keepsTheTwoKindsAndTheSinglePlanApart) {
    TodayTransaction::Values values;
    values.isExpense = true;
    const TodayTransaction transaction(values);
    EXPECT_FALSE(transaction.isIncome);
    EXPECT_TRUE(transaction.isExpense);
    EXPECT_FALSE(transaction.isSinglePlan);
}

TEST(TodayTransactionTest, startsAtIndexZeroAndTakesAnother) {
    TodayTransaction transaction = transactionDated(0);
    EXPECT_EQ(transaction.index, 0);
    transaction.index = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(transaction.index, std::numeric_limits<std::int64_t>::max());
}

TEST(TodayTransactionTest, isNotOverdueAtItsVeryMoment) {
    const support::ManualClock clock(tenthOfMarchSixPm);
    EXPECT_FALSE(transactionDated(tenthOfMarchSixPm).isOverdue());
}

TEST(TodayTransactionTest, isOverdueOneSecondLater) {
    const support::ManualClock clock(tenthOfMarchSixPm);
    EXPECT_TRUE(transactionDated(tenthOfMarchSixPm - 1).isOverdue());
}

TEST(TodayTransactionTest, comparesFractionsOfASecond) {
    const support::ManualClock clock(tenthOfMarchSixPm + 0.25);
    EXPECT_TRUE(transactionDated(tenthOfMarchSixPm).isOverdue());
    EXPECT_FALSE(transactionDated(tenthOfMarchSixPm + 0.25).isOverdue());
    EXPECT_FALSE(transactionDated(tenthOfMarchSixPm + 0.5).isOverdue());
}

TEST(TodayTransactionTest, asksTheClockAtEachReadAndDoesNotRoundToDays) {
    support::ManualClock clock(tenthOfMarchSixPm - 60);
    const TodayTransaction transaction = transactionDated(tenthOfMarchSixPm);
    EXPECT_FALSE(transaction.isOverdue()) << "at 17:59";
    clock.set(tenthOfMarchSixPm + 1);
    EXPECT_TRUE(transaction.isOverdue()) << "at 18:00:01";
}

TEST(TodayTransactionTest, isNeverOverdueWithoutADate) {
    const support::ManualClock clock(tenthOfMarchSixPm);
    EXPECT_FALSE(transactionDated(std::numeric_limits<double>::quiet_NaN()).isOverdue());
    EXPECT_FALSE(transactionDated(std::numeric_limits<double>::infinity()).isOverdue());
    EXPECT_TRUE(transactionDated(-std::numeric_limits<double>::infinity()).isOverdue());
}

} // namespace

#include "model/TodayTransaction.h"

#include "platform/system/Clock.h"

#include <utility>

TodayTransaction::TodayTransaction(Values values)
    : name(std::move(values.name))
    , date(values.date)
    , imageName(std::move(values.imageName))
    , amount(std::move(values.amount))
    , isIncome(values.isIncome)
    , isExpense(values.isExpense)
    , planPrimaryKey(std::move(values.planPK))
    , isSinglePlan(values.isSinglePlan) {}

bool TodayTransaction::isOverdue() const {
    return platform::Clock::current().now() > date;
}

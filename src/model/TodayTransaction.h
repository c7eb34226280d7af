#pragma once

#include <QString>

#include <cstdint>
#include <memory>

// One planned transaction (one occurrence of a plan of the host application) as the widget shows it. A
// reference type: the controller's list, the row that shows it and the controller's current transaction share
// one instance (shared_ptr).
class TodayTransaction final {
public:
    // The eight values that a feed record holds, in the feed's order.
    struct Values {
        QString name;      // payee or category, the row's title
        double date = 0;   // seconds since 1970-01-01 00:00 UTC; compared exactly
        QString imageName; // icon in the account's folder, without ".png"
        QString amount;    // formatted for display by the host application
        bool isIncome = false;
        bool isExpense = false;
        QString planPK;            // the plan's primary key; several occurrences share one
        bool isSinglePlan = false; // the plan has this one occurrence only
    };

    explicit TodayTransaction(Values values);

    QString name;
    double date;
    QString imageName;
    QString amount;
    bool isIncome;
    bool isExpense;
    QString planPrimaryKey;
    bool isSinglePlan;
    std::int64_t index = 0; // position in the controller's list, given by the controller

    // Whether the current moment, taken afresh at each call, is later than the date. Equal instants are not
    // overdue, there is no rounding to days, and a date that is NaN is never overdue.
    [[nodiscard]] bool isOverdue() const;
};

using TodayTransactionPtr = std::shared_ptr<TodayTransaction>;

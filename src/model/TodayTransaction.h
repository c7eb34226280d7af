#pragma once

#include <QString>

#include <cstdint>
#include <memory>

// A planned transaction: one occurrence of a plan of the host application. The controller's list, the row
// that shows the transaction and the controller's current transaction share one instance.
class TodayTransaction final {
public:
    // The values of a feed record, in the feed's order.
    struct Values {
        QString name;      // the payee or category, shown as the title
        double date = 0;   // seconds since 1970-01-01 00:00 UTC
        QString imageName; // of the icon's file, without ".png"
        QString amount;    // formatted for display by the host application
        bool isIncome = false;
        bool isExpense = false;
        QString planPK;            // the primary key of the plan, which its occurrences share
        bool isSinglePlan = false; // whether the plan has only this occurrence
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
    std::int64_t index = 0; // the position in the controller's list, set by the controller

    // Whether the current time is later than the date; they are not rounded to days. A date that is NaN is
    // never overdue.
    [[nodiscard]] bool isOverdue() const;
};

using TodayTransactionPtr = std::shared_ptr<TodayTransaction>;

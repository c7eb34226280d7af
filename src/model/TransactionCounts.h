#pragma once

#include "model/TodayTransaction.h"

#include <vector>

// How many transactions of a list wait for their user.
struct TransactionCounts {
    int overdue = 0;
    int dueToday = 0; // not overdue, and due before the next day starts in the region's time zone
    int due = 0;      // all that are not overdue, those of today among them

    bool operator==(const TransactionCounts&) const = default;
};

// Those of a list now.
[[nodiscard]] TransactionCounts countsOf(const std::vector<TodayTransactionPtr>& transactions);

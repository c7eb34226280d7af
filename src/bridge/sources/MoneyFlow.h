#pragma once

#include "bridge/plans/Plan.h"

#include <optional>
#include <string>
#include <vector>

namespace bridge {

// What a transaction does to one account.
struct Movement {
    enum class Account {
        Own,      // the user's money: assets and liabilities
        Category, // expenses and incomes
        Neutral   // equity, which conversions between currencies go through
    };
    enum class Way { In, Out };

    std::string name;
    Account account = Account::Category;
    Way way = Way::Out;
    std::optional<Amount> amount; // by its sign in or out; absent where it is not known
};

// A transaction as a bill: what it does to the user's own money.
struct MoneyFlow {
    Direction direction = Direction::Expense;
    std::string account;  // the first of the user's own that the amount is of
    std::string category; // the first; empty for a transfer
    std::optional<Amount> amount;
};

// The amount is the sum of what goes out, or of what comes in where that is more. It is absent where a part
// of it is, and where its parts have several currencies. Without an account of the user it is always absent.
[[nodiscard]] MoneyFlow flowOf(const std::vector<Movement>& movements);

} // namespace bridge

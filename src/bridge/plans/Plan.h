#pragma once

#include "bridge/plans/Day.h"
#include "bridge/plans/Decimal.h"

#include <optional>
#include <string>
#include <vector>

namespace bridge {

struct Amount {
    Decimal number; // negative: money goes out
    std::string
        currency; // its ISO 4217 code where the file tells it, otherwise the file's own name or sign for it

    bool operator==(const Amount&) const = default;
};

// A transfer between two accounts of the user is neither an expense nor an income.
enum class Direction { Expense, Income, Transfer };

// One time that a plan falls due.
struct Occurrence {
    Day day;     // on which it is due, as the program that wrote the file shows it
    Day nominal; // by which the file counts it, before any weekend rule; identifies it within its plan

    bool operator==(const Occurrence&) const = default;
};

// What enters a paid occurrence into a journal, without its days.
struct Entry {
    std::string description;
    std::string plan; // what the journal calls it
    std::vector<std::string> postings;

    bool operator==(const Entry&) const = default;
};

// A scheduled transaction of a finance program's file. Texts are UTF-8 and empty where the file has none.
struct Plan {
    std::string key;  // stays the same for as long as the program's own identity does; unique in its file
    std::string name; // the schedule's own
    std::string payee;
    std::string category; // with its parents, "Home:Rent"
    std::string account;
    std::optional<Amount> amount; // absent where it is not known before the user enters it
    Direction direction = Direction::Expense;
    bool isSingle = false; // nothing follows the first occurrence
    // By day: the overdue ones, as many as the program counts, and those of the time that was asked for.
    // Empty for a plan with none of these.
    std::vector<Occurrence> occurrences;
    std::optional<Entry> entry; // absent where payments cannot be entered; not kept in the database
};

} // namespace bridge

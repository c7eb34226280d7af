#pragma once

#include "bridge/plans/Plan.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace bridge {

struct HledgerPosting {
    std::string account;
    std::vector<std::optional<Amount>> amounts; // one a commodity; absent where it has no 64-bit units
};

// A transaction of hledger's JSON. The texts of tags that it does not have are empty.
struct HledgerTransaction {
    long long index = 0; // counts by file, then rule, then date
    Day day;
    std::string description;
    std::string rule; // the period expression, "monthly from 2026-10-01"; empty in a real transaction
    std::string plan;
    std::string paidOf;
    std::vector<HledgerPosting> postings; // without virtual ones
    // All postings as a journal has them whose decimal mark is a point; empty where an amount cannot be
    // written so.
    std::vector<std::string> lines;
};

// All transactions in the order of the JSON, or a sentence on why it cannot be read.
[[nodiscard]] std::variant<std::vector<HledgerTransaction>, std::string>
transactionsOfJson(std::string_view json);

} // namespace bridge

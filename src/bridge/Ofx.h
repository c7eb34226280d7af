#pragma once

#include "bridge/plans/Plan.h"

#include <string>
#include <vector>

namespace bridge {

// A payment as a line of a bank's statement.
struct OfxPayment {
    std::string id; // an import takes in no second one with the same
    std::string account;
    std::string payee; // may be empty
    Amount amount;
    Day paid;
};

// A file in the form OFX 1.02 with a statement for each account and currency, in the order of their names,
// and the payments in theirs. The same payments make the same bytes.
[[nodiscard]] std::string ofxOf(const std::vector<OfxPayment>& payments);

} // namespace bridge

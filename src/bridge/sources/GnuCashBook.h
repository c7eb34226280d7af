#pragma once

#include "bridge/sources/GnuCashSchedule.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

struct GnuCashAccount {
    std::string name;
    std::string type;   // "BANK", "EXPENSE", ...
    std::string parent; // its id; empty for the root
    std::string currency;
    std::int64_t smallest = 100; // the parts of a unit of its currency
};

// A split of a template transaction. One of the two sides has a formula, and a fraction where its value is
// known.
struct GnuCashSplit {
    struct Side {
        std::string formula;
        std::string fraction;
    };

    std::string account; // its id
    std::string currency;
    Side debit;  // into the account
    Side credit; // out of it
};

struct GnuCashTemplate {
    std::string description;
    std::vector<GnuCashSplit> splits;
};

struct GnuCashPlan {
    std::string id;
    std::string name;
    std::string account; // the template account that its template transactions have
    bool isEnabled = true;
    GnuCashSchedule schedule;
};

// What a GnuCash file says of its plans.
struct GnuCashBook {
    std::map<std::string, GnuCashAccount> accounts;   // by id
    std::map<std::string, GnuCashTemplate> templates; // by template account
    std::vector<GnuCashPlan> plans;
    std::vector<std::string> features; // that older versions of GnuCash do not know
    std::string fault;                 // a sentence; the rest is then of no meaning
};

// Reads a file's XML, unpacked. Transactions that were entered are skipped.
[[nodiscard]] GnuCashBook readGnuCashBook(std::string_view xml);

} // namespace bridge

#pragma once

#include "ctl/Host.h"
#include "model/TransactionCounts.h"

#include <optional>
#include <string>
#include <vector>

namespace ctl {

// The counts of the panel's list as it is now.
struct CountsReading {
    std::optional<TransactionCounts> counts; // absent at a fault
    std::optional<ListFault> fault;
    std::vector<TodayTransactionPtr> transactions; // those that are counted
};

// Of a list that the settings hide, the panel shows and counts nothing.
[[nodiscard]] CountsReading readCounts();

// What the status command prints, as text or as JSON. What the kernel offers is asked when this is made: a
// process that is confined cannot ask.
class StatusText final {
public:
    explicit StatusText(bool isJson);

    // The counts, in one line without its line feed; as JSON, with what the kernel offers.
    [[nodiscard]] std::string line(const std::optional<TransactionCounts>& counts) const;

    // What the kernel offers, with a line feed; empty as JSON.
    [[nodiscard]] std::string lastLine() const;

private:
    [[nodiscard]] std::string jsonLine(const std::optional<TransactionCounts>& counts) const;

    bool isJson_;
    int landlockVersion_;
    bool filtersSystemCalls_;
};

} // namespace ctl

#pragma once

#include "bridge/sources/Hledger.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace bridge {

// The time for which hledger generates transactions.
struct HledgerRange {
    // From when rules that have no `from` themselves count: "every 2 weeks" depends on it, so that it must
    // not move from day to day. No later than the first day; the fewer years before it, the faster.
    Day start;
    Day first; // what is before it is not due
    Day last;
};

// The range of a first day that the user has chosen: rules count from it. Without one, 90 days before
// today, and rules count from Monday, 1 January 2024: where weeks, months and years start.
[[nodiscard]] HledgerRange rangeOf(const std::optional<Day>& chosen, const Period& period);

// What hledger says of a journal.
struct HledgerReport {
    HledgerAnswer answer;
    std::vector<std::string> files; // the journal and all that it includes, which are to be watched
    std::string fault;              // a sentence where one of these is missing; empty otherwise
};

struct HledgerLimits {
    std::chrono::milliseconds time{20000}; // for everything
    std::size_t output = std::size_t{64} << 20;
};

// The installed program, which is started without a shell and ended where it exceeds the limits. The same
// results whatever the user's language. Nothing is written.
class HledgerProgram final {
public:
    explicit HledgerProgram(std::string program = "hledger", HledgerLimits limits = {});

    // The path is absolute: hledger gives names such as "-" and "csv:x" a meaning.
    [[nodiscard]] HledgerReport report(const std::string& journal, const HledgerRange& range) const;

    // The journal and all that it includes; none where hledger cannot tell.
    [[nodiscard]] std::vector<std::string> files(const std::string& journal) const;

    // What hledger's checks have against the journal: a fault like that of a report, empty where they pass.
    [[nodiscard]] std::string check(const std::string& journal) const;

private:
    std::string program_;
    HledgerLimits limits_;
};

} // namespace bridge

#pragma once

#include <QString>

namespace center {

// How many transactions wait for their user.
struct Counts {
    int overdue = 0;
    int dueToday = 0;

    bool operator==(const Counts&) const = default;
    [[nodiscard]] bool isNone() const { return *this == Counts(); }
};

// Both as a text of the user's language, "2 overdue, 1 due today"; what there is none of is left out.
// "Nothing is due" for none at all.
[[nodiscard]] QString countsText(const Counts& counts);

} // namespace center

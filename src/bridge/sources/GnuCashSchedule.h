#pragma once

#include "bridge/plans/Plan.h"
#include "bridge/plans/Recurrence.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace bridge {

// One recurrence of a GnuCash plan: every `every` periods from `start` on.
struct GnuCashRecurrence {
    enum class Period { Once, Day, Week, Month, EndOfMonth, NthWeekday, LastWeekday, Year };

    Period period = Period::Once;
    std::int64_t every = 1; // 1 at least
    Day start;
    WeekendMove move = WeekendMove::None; // of months and years only; GnuCash never moves days and weeks
};

// How far a plan was entered.
struct GnuCashState {
    std::optional<Day> last;               // the moved day of the last occurrence that was entered
    std::optional<std::int64_t> remaining; // how many are left; absent where there is no such limit
};

struct GnuCashSchedule {
    std::vector<GnuCashRecurrence> recurrences;
    Day start;
    std::optional<Day> end; // of the moved days
    GnuCashState state;
    std::vector<GnuCashState> postponed; // by day; each as it was before the postponed occurrence
};

// The first occurrence of which both days are after that one; the earliest of several recurrences.
[[nodiscard]] std::optional<Occurrence> nextAfter(const GnuCashSchedule& schedule, Day day);

struct GnuCashOccurrences {
    std::vector<Occurrence> all;
    bool isSingle = false;  // nothing follows the first one, which may be after the last day
    bool isComplete = true; // otherwise there are more than were asked for
};

// What is to be entered up to a day: the postponed occurrences and then, on purpose as GnuCash does, all that
// follow the last postponed one, even if they were entered already.
[[nodiscard]] GnuCashOccurrences occurrencesOf(const GnuCashSchedule& schedule, Day last, std::size_t most);

} // namespace bridge

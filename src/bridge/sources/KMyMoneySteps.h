#pragma once

#include "bridge/plans/Plan.h"
#include "bridge/plans/Recurrence.h"
#include "bridge/sources/Reading.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace bridge {

enum class KMyMoneyUnit { Once, Day, Week, HalfMonth, Month, Year };

// When a KMyMoney schedule is due, as its file tells it; all days before any weekend rule.
struct KMyMoneySchedule {
    std::optional<Day> next = {};
    KMyMoneyUnit unit = KMyMoneyUnit::Month;
    std::int64_t every = 1;
    std::optional<Day> start = {}; // months and years come back to its day
    std::optional<Day> end = {};
    std::optional<Day> lastPayment = {};
    std::vector<Day> paidAhead = {};
    WeekendMove weekendMove = WeekendMove::None;
    bool isLastDayOfMonth = false;
};

[[nodiscard]] bool isFinished(const KMyMoneySchedule& schedule);

// The due day after another one; nothing where the schedule ends with that one.
[[nodiscard]] std::optional<Day> following(const KMyMoneySchedule& schedule, Day nominal);

// The overdue ones that KMyMoney counts, those that were paid ahead among them, then those from today on that
// were not.
[[nodiscard]] std::vector<Occurrence> occurrencesOf(const KMyMoneySchedule& schedule, const Period& period);

} // namespace bridge

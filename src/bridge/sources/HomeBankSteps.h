#pragma once

#include "bridge/plans/Plan.h"
#include "bridge/sources/Reading.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace bridge {

enum class HomeBankUnit { Day, Week, Month, Year };

// When a HomeBank plan is due, as its file tells it.
struct HomeBankSchedule {
    Day next;
    std::int64_t every = 1; // below 1: nothing follows the next day
    HomeBankUnit unit = HomeBankUnit::Month;
    std::optional<std::int64_t> left = {}; // how many occurrences there still are, where they are limited
    // Its other rules for weekends move the booking only, neither the day that is shown nor the next one.
    bool skipsWeekends = false;
    // How many days the last month's end took away: 30 November with 1 is a plan for the 31st. 0 to 3.
    std::int64_t gap = 0;
};

// The schedule after one occurrence was booked or skipped; nothing where none follows.
[[nodiscard]] std::optional<HomeBankSchedule> advanced(const HomeBankSchedule& schedule);

// The late ones that HomeBank counts, then those after today. The nominal day is the one that HomeBank writes
// when the ones before it are booked.
[[nodiscard]] std::vector<Occurrence> occurrencesOf(HomeBankSchedule schedule, const Period& period);

} // namespace bridge

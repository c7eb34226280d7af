#pragma once

#include "bridge/plans/Day.h"

#include <string>

namespace bridge {

// Days in the time zone of the region. A plan has days alone; moments are made of them when the feed is
// written, so that a change of the zone moves no plan.

[[nodiscard]] Day today();
[[nodiscard]] Day dayOfMoment(double seconds); // since 1970-01-01 00:00 UTC, finite

// The last whole second of a day, 23:59:59, as seconds since 1970-01-01 00:00 UTC: what is due on a day is
// not overdue on that day.
[[nodiscard]] double endOfDay(Day day);

// A moment as a text like "2026-03-10 15:00".
[[nodiscard]] std::string textOfMoment(double seconds);

} // namespace bridge

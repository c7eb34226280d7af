#include "bridge/plans/Recurrence.h"

#include <gtest/gtest.h>

#include <limits>

using bridge::Day;
using bridge::movedOffWeekend;
using bridge::plusDays;
using bridge::plusMonths;
using bridge::WeekendMove;
using bridge::withDayOfMonth;

namespace {

Day day(const char* text) {
    return *bridge::dayOfText(text);
}

std::string text(std::optional<Day> day) {
    return day ? bridge::textOfDay(*day) : "nothing";
}

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

} // namespace

TEST(Recurrence, addsDays) {
    EXPECT_EQ(text(plusDays(day("2028-02-28"), 1)), "2028-02-29");
    EXPECT_EQ(text(plusDays(day("2026-12-28"), 7)), "2027-01-04");
    EXPECT_EQ(text(plusDays(day("2026-03-01"), -1)), "2026-02-28");
    EXPECT_EQ(text(plusDays(day("2026-03-01"), 0)), "2026-03-01");
}

TEST(Recurrence, addsMonthsAndStopsAtTheirEnds) {
    const std::tuple<const char*, int, const char*> cases[] = {
        {"2026-01-31", 1, "2026-02-28"},  {"2028-01-31", 1, "2028-02-29"}, {"2026-10-31", 1, "2026-11-30"},
        {"2026-11-30", 1, "2026-12-30"},  {"2026-12-15", 1, "2027-01-15"}, {"2026-01-31", 11, "2026-12-31"},
        {"2028-02-29", 12, "2029-02-28"}, {"2027-03-31", -1, "2027-02-28"}};
    for (const auto& [from, months, to] : cases)
        EXPECT_EQ(text(plusMonths(day(from), months)), to) << from << " plus " << months;
}

TEST(Recurrence, endsWithTheYears1And9999) {
    EXPECT_EQ(text(plusDays(day("9999-12-30"), 1)), "9999-12-31");
    EXPECT_EQ(text(plusDays(day("9999-12-31"), 1)), "nothing");
    EXPECT_EQ(text(plusDays(day("0001-01-01"), -1)), "nothing");
    EXPECT_EQ(text(plusMonths(day("9999-11-30"), 1)), "9999-12-30");
    EXPECT_EQ(text(plusMonths(day("9999-12-01"), 1)), "nothing");
    EXPECT_EQ(text(plusMonths(day("0001-01-31"), -1)), "nothing");
    for (const std::int64_t count : {largest, -largest, std::numeric_limits<std::int64_t>::min(),
                                     std::int64_t{2'147'483'648}, std::int64_t{4'294'967'296}}) {
        EXPECT_EQ(text(plusDays(day("2026-11-21"), count)), "nothing") << count;
        EXPECT_EQ(text(plusMonths(day("2026-11-21"), count)), "nothing") << count;
    }
}

TEST(Recurrence, comesBackToADayOfTheMonth) {
    EXPECT_EQ(text(withDayOfMonth(day("2026-12-30"), 31)), "2026-12-31");
    EXPECT_EQ(text(withDayOfMonth(day("2026-11-30"), 31)), "2026-11-30");
    EXPECT_EQ(text(withDayOfMonth(day("2027-02-28"), 30)), "2027-02-28");
    EXPECT_EQ(text(withDayOfMonth(day("2027-03-28"), 1)), "2027-03-01");
    EXPECT_EQ(text(withDayOfMonth(day("2027-03-28"), 0)), "2027-03-01");
    EXPECT_EQ(text(withDayOfMonth(day("2027-03-28"), 4'000'000'000)), "2027-03-31");
    EXPECT_EQ(text(bridge::lastDayOfMonth(day("2028-02-01"))), "2028-02-29");
    EXPECT_EQ(text(bridge::lastDayOfMonth(day("2026-12-31"))), "2026-12-31");
    EXPECT_EQ(bridge::dayOfMonth(day("2026-12-31")), 31U);
}

TEST(Recurrence, movesWeekendsOnly) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"2026-11-20", "2026-11-20", "2026-11-20"}, // Friday
        {"2026-11-21", "2026-11-20", "2026-11-23"}, // Saturday
        {"2026-11-22", "2026-11-20", "2026-11-23"}, // Sunday
        {"2026-11-23", "2026-11-23", "2026-11-23"},
        {"2026-08-01", "2026-07-31", "2026-08-03"}, // over the month's end
        {"2027-02-28", "2027-02-26", "2027-03-01"},
    };
    for (const auto& [from, before, after] : cases) {
        EXPECT_EQ(text(movedOffWeekend(day(from), WeekendMove::None)), from);
        EXPECT_EQ(text(movedOffWeekend(day(from), WeekendMove::Before)), before) << from;
        EXPECT_EQ(text(movedOffWeekend(day(from), WeekendMove::After)), after) << from;
        EXPECT_EQ(bridge::isWeekend(day(from)), std::string(from) != before) << from;
    }
}

#include "bridge/sources/GnuCashSchedule.h"

#include <gmock/gmock.h>

#include <limits>

using namespace std::chrono_literals;
using bridge::Day;
using bridge::GnuCashRecurrence;
using bridge::GnuCashSchedule;
using bridge::WeekendMove;
using Period = bridge::GnuCashRecurrence::Period;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Day dayOf(const char* text) {
    return bridge::dayOfText(text).value();
}

GnuCashSchedule scheduleOf(Period period, const char* start, std::int64_t every = 1,
                           WeekendMove move = WeekendMove::None) {
    GnuCashSchedule schedule;
    schedule.start = dayOf(start);
    schedule.recurrences = {{period, every, schedule.start, move}};
    return schedule;
}

std::string textOf(const std::vector<bridge::Occurrence>& occurrences) {
    std::string text;
    for (const auto& occurrence : occurrences)
        text += (text.empty() ? "" : " ") + bridge::textOfDay(occurrence.day);
    return text;
}

std::string firstOf(const GnuCashSchedule& schedule, std::size_t count) {
    return textOf(bridge::occurrencesOf(schedule, bridge::lastDay, count).all);
}

} // namespace

TEST(GnuCashSchedule, stepsByEachKindOfPeriod) {
    struct Case {
        Period period;
        const char* start;
        std::int64_t every;
        const char* days;
    };
    const Case cases[] = {
        {Period::Once, "2026-12-05", 1, "2026-12-05"},
        {Period::Once, "2026-12-05", 0, "2026-12-05"},
        {Period::Day, "2026-12-30", 10, "2026-12-30 2027-01-09 2027-01-19"},
        {Period::Week, "2026-11-06", 2, "2026-11-06 2026-11-20 2026-12-04"},
        {Period::Month, "2026-12-31", 1, "2026-12-31 2027-01-31 2027-02-28 2027-03-31"},
        {Period::Month, "2026-08-31", 3, "2026-08-31 2026-11-30 2027-02-28 2027-05-31"},
        {Period::EndOfMonth, "2027-01-31", 1, "2027-01-31 2027-02-28 2027-03-31"},
        {Period::EndOfMonth, "2026-11-15", 1, "2026-11-15 2026-11-30 2026-12-31"},
        {Period::NthWeekday, "2026-10-13", 1, "2026-10-13 2026-11-10 2026-12-08"},
        {Period::NthWeekday, "2026-10-28", 1, "2026-10-28 2026-11-25 2026-12-23 2027-01-27"},
        {Period::NthWeekday, "2026-10-29", 1, "2026-10-29 2026-11-26 2026-12-24"},
        {Period::NthWeekday, "2026-11-29", 1, "2026-11-29 2026-12-27 2027-01-24 2027-02-28 2027-03-28"},
        {Period::NthWeekday, "2026-11-30", 1, "2026-11-30 2026-12-28 2027-01-25 2027-02-22 2027-03-22"},
        {Period::LastWeekday, "2026-09-25", 1, "2026-09-25 2026-10-30 2026-11-27"},
        {Period::Year, "2024-02-29", 1, "2024-02-29 2025-02-28 2026-02-28 2027-02-28 2028-02-29"}};
    for (const auto& [period, start, every, days] : cases) {
        const std::size_t count = (std::string_view(days).size() + 1) / 11;
        EXPECT_EQ(firstOf(scheduleOf(period, start, every), count), days) << start;
    }
}

TEST(GnuCashSchedule, movesOnlyMonthsAndYearsOffTheWeekend) {
    struct Case {
        Period period;
        const char* before; // of a start on Saturday, 29 August 2026
        const char* after;
    };
    const Case cases[] = {
        {Period::Day, "2026-08-29", "2026-08-29"},        {Period::Week, "2026-08-29", "2026-08-29"},
        {Period::Month, "2026-08-28", "2026-08-31"},      {Period::Year, "2026-08-28", "2026-08-31"},
        {Period::NthWeekday, "2026-08-29", "2026-08-29"}, {Period::LastWeekday, "2026-08-29", "2026-08-29"},
        {Period::Once, "2026-08-29", "2026-08-29"}};
    for (const auto& [period, before, after] : cases) {
        auto schedule = scheduleOf(period, "2026-08-29", 1, WeekendMove::Before);
        schedule.start -= std::chrono::days(7); // a move before the plan's start would pass it
        EXPECT_EQ(firstOf(schedule, 1), before);
        schedule.recurrences[0].move = WeekendMove::After;
        EXPECT_EQ(firstOf(schedule, 1), after);
    }
    auto ends = scheduleOf(Period::EndOfMonth, "2027-01-31", 1, WeekendMove::Before);
    ends.start -= std::chrono::days(7);
    EXPECT_EQ(firstOf(ends, 2), "2027-01-29 2027-02-26");
}

TEST(GnuCashSchedule, hasPassedWhatIsNominallyOrReallyNotAfterTheLastDay) {
    auto back = scheduleOf(Period::Month, "2026-10-22", 1, WeekendMove::Before);
    back.state.last = dayOf("2026-11-20"); // Sunday, 22 November, moved
    EXPECT_EQ(firstOf(back, 1), "2026-12-22");
    back.state.last = dayOf("2026-11-19");
    EXPECT_EQ(bridge::nextAfter(back, dayOf("2026-11-19")),
              (bridge::Occurrence{dayOf("2026-11-20"), dayOf("2026-11-22")}));
    auto forward = scheduleOf(Period::Month, "2026-10-21", 1, WeekendMove::After);
    forward.state.last = dayOf("2026-11-21"); // its nominal day, two before the moved one
    EXPECT_EQ(firstOf(forward, 1), "2026-12-21");
}

TEST(GnuCashSchedule, startsNoEarlierThanItsFirstDay) {
    auto schedule = scheduleOf(Period::Month, "2026-01-10");
    schedule.start = dayOf("2026-03-11");
    EXPECT_EQ(firstOf(schedule, 1), "2026-04-10");
    schedule.state.last = dayOf("2025-01-01");
    EXPECT_EQ(firstOf(schedule, 1), "2026-04-10");
}

TEST(GnuCashSchedule, mergesRecurrencesAndCountsOneDayOnce) {
    auto schedule = scheduleOf(Period::Month, "2026-10-01");
    schedule.recurrences.push_back({Period::Month, 1, dayOf("2026-10-15")});
    schedule.recurrences.push_back({Period::Month, 2, dayOf("2026-10-15")});
    EXPECT_EQ(firstOf(schedule, 4), "2026-10-01 2026-10-15 2026-11-01 2026-11-15");
}

TEST(GnuCashSchedule, endsByCountAndByDate) {
    auto counted = scheduleOf(Period::Month, "2026-10-01");
    for (const std::int64_t remaining : {0, 1, 2}) {
        counted.state.remaining = remaining;
        const auto occurrences = bridge::occurrencesOf(counted, bridge::lastDay, 10);
        EXPECT_EQ(occurrences.all.size(), static_cast<std::size_t>(remaining));
        EXPECT_EQ(occurrences.isSingle, remaining == 1);
        EXPECT_TRUE(occurrences.isComplete);
    }
    auto ended = scheduleOf(Period::Month, "2026-10-15");
    ended.end = dayOf("2026-11-14");
    EXPECT_EQ(firstOf(ended, 10), "2026-10-15");
    EXPECT_TRUE(bridge::occurrencesOf(ended, bridge::lastDay, 10).isSingle);
    ended.end = dayOf("2026-11-15");
    EXPECT_EQ(firstOf(ended, 10), "2026-10-15 2026-11-15");
    // The end is compared with the moved day.
    auto moved = scheduleOf(Period::Month, "2026-10-22", 1, WeekendMove::Before);
    moved.end = dayOf("2026-11-20");
    EXPECT_EQ(firstOf(moved, 10), "2026-10-22 2026-11-20");
}

TEST(GnuCashSchedule, tellsASingleOneThatIsAfterTheLastDay) {
    const auto once = bridge::occurrencesOf(scheduleOf(Period::Once, "2026-12-05"), dayOf("2026-11-21"), 10);
    EXPECT_THAT(once.all, IsEmpty());
    EXPECT_TRUE(once.isSingle);
    const auto monthly =
        bridge::occurrencesOf(scheduleOf(Period::Month, "2026-12-05"), dayOf("2026-12-05"), 10);
    EXPECT_EQ(textOf(monthly.all), "2026-12-05");
    EXPECT_FALSE(monthly.isSingle);
}

TEST(GnuCashSchedule, startsAgainBehindThePostponedOnes) {
    auto schedule = scheduleOf(Period::Month, "2026-08-05");
    schedule.state.last = dayOf("2026-10-05");
    schedule.postponed = {{dayOf("2026-08-05"), 0}};
    EXPECT_EQ(firstOf(schedule, 3), "2026-09-05 2026-10-05 2026-11-05");
    schedule.postponed.push_back({dayOf("2026-08-06"), 0}); // the same one, noted twice
    EXPECT_EQ(firstOf(schedule, 3), "2026-09-05 2026-10-05 2026-11-05");
    schedule.postponed.push_back({dayOf("2026-10-05"), 0});
    EXPECT_EQ(firstOf(schedule, 3), "2026-09-05 2026-11-05 2026-12-05");
}

TEST(GnuCashSchedule, countsWhatIsLeftFromThePostponedOnes) {
    auto schedule = scheduleOf(Period::Month, "2026-08-05");
    schedule.state = {dayOf("2026-10-05"), 1};
    schedule.postponed = {{dayOf("2026-08-05"), 3}};
    EXPECT_EQ(firstOf(schedule, 10), "2026-09-05 2026-10-05 2026-11-05");
    // The last of the postponed ones decides, whatever the plan itself says.
    struct Case {
        const char* last;
        std::int64_t remaining;
        std::vector<bridge::GnuCashState> postponed;
        const char* days;
    };
    const Day august = dayOf("2026-08-05");
    const Day september = dayOf("2026-09-05");
    const Day october = dayOf("2026-10-05");
    const Case cases[] = {
        {"2026-10-05", 0, {{august, 3}}, "2026-09-05 2026-10-05 2026-11-05"},
        {"2026-10-05", 1, {{august, 2}}, "2026-09-05 2026-10-05"},
        {"2026-10-05", 1, {{august, 1}}, "2026-09-05"},
        {"2026-10-05", 5, {{august, 2}, {september, 1}}, "2026-09-05 2026-10-05"},
        {"2026-10-05", 5, {{august, 2}, {september, 2}}, "2026-09-05 2026-10-05 2026-11-05"},
        {"2026-11-05", 5, {{august, 2}, {october, 2}}, "2026-09-05 2026-11-05 2026-12-05"},
    };
    for (const auto& [last, remaining, postponed, days] : cases) {
        schedule.state = {dayOf(last), remaining};
        schedule.postponed = postponed;
        EXPECT_EQ(firstOf(schedule, 10), days);
    }
}

TEST(GnuCashSchedule, isBoundedWhateverTheFileSays) {
    const auto daily = bridge::occurrencesOf(scheduleOf(Period::Day, "0001-01-01"), dayOf("2026-11-21"), 100);
    EXPECT_EQ(daily.all.size(), 100U);
    EXPECT_FALSE(daily.isComplete);
    for (const Period period : {Period::Day, Period::Week, Period::Month, Period::EndOfMonth,
                                Period::NthWeekday, Period::LastWeekday, Period::Year}) {
        const auto rare = scheduleOf(period, "2026-10-31", std::numeric_limits<std::int64_t>::max());
        EXPECT_EQ(bridge::occurrencesOf(rare, bridge::lastDay, 10).all.size(), 1U);
        auto last = scheduleOf(period, "9999-12-31", 1, WeekendMove::After);
        EXPECT_EQ(bridge::occurrencesOf(last, bridge::lastDay, 10).all.size(), 1U);
        last.start = bridge::firstDay;
        last.recurrences[0].start = bridge::firstDay;
        EXPECT_FALSE(bridge::nextAfter(last, bridge::lastDay));
    }
}

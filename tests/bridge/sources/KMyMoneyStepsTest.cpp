#include "bridge/sources/KMyMoneySteps.h"

#include <gtest/gtest.h>

#include <limits>

using namespace bridge;
using enum KMyMoneyUnit;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
const bridge::Day today = *dayOfText("2026-11-21");
const Period month{today, today + std::chrono::days(31)};

KMyMoneySchedule scheduleOf(const char* next, KMyMoneyUnit unit, std::int64_t every = 1,
                            const char* start = "") {
    KMyMoneySchedule schedule;
    schedule.next = dayOfText(next);
    schedule.unit = unit;
    schedule.every = every;
    schedule.start = dayOfText(start);
    return schedule;
}

std::vector<std::string> daysOf(const KMyMoneySchedule& schedule, const Period& period = month) {
    std::vector<std::string> days;
    for (const Occurrence& occurrence : occurrencesOf(schedule, period))
        days.push_back(textOfDay(occurrence.day));
    return days;
}

using Days = std::vector<std::string>;

} // namespace

TEST(KMyMoneySteps, followTheRules) {
    const std::tuple<const char*, KMyMoneySchedule, Days> cases[] = {
        {"days", scheduleOf("2026-11-20", KMyMoneyUnit::Day, 10), {"2026-11-30", "2026-12-10"}},
        {"weeks", scheduleOf("2026-12-24", Week, 2), {"2027-01-07", "2027-01-21"}},
        {"months", scheduleOf("2026-11-12", Month, 3, "2026-02-12"), {"2027-02-12", "2027-05-12"}},
        {"31st",
         scheduleOf("2026-11-30", Month, 1, "2026-08-31"),
         {"2026-12-31", "2027-01-31", "2027-02-28", "2027-03-31"}},
        {"30th", scheduleOf("2027-01-30", Month, 1, "2026-08-30"), {"2027-02-28", "2027-03-30"}},
        {"a start on another day", scheduleOf("2026-11-05", Month, 1, "2026-08-20"), {"2026-12-20"}},
        {"no start", scheduleOf("2027-01-31", Month), {"2027-02-28", "2027-03-28"}},
        {"leap day",
         scheduleOf("2028-02-29", Year, 1, "2024-02-29"),
         {"2029-02-28", "2030-02-28", "2031-02-28", "2032-02-29"}},
        {"half months of the 1st", scheduleOf("2026-11-01", HalfMonth), {"2026-11-16", "2026-12-01"}},
        {"half months of the 15th",
         scheduleOf("2026-11-15", HalfMonth),
         {"2026-11-30", "2026-12-15", "2026-12-31", "2027-01-15"}},
        {"half months of the 14th",
         scheduleOf("2027-01-14", HalfMonth),
         {"2027-01-29", "2027-02-14", "2027-02-28", "2027-03-15"}},
        {"half months of the 13th", scheduleOf("2026-11-13", HalfMonth), {"2026-11-28", "2026-12-13"}},
        {"three half months", scheduleOf("2026-11-05", HalfMonth, 3), {"2026-12-20", "2027-02-05"}},
    };
    for (const auto& [name, schedule, expected] : cases) {
        bridge::Day nominal = *schedule.next;
        for (const std::string& day : expected) {
            const auto next = following(schedule, nominal);
            ASSERT_TRUE(next) << name;
            EXPECT_EQ(textOfDay(*next), day) << name;
            nominal = *next;
        }
    }
}

TEST(KMyMoneySteps, moveEveryStepOffWeekends) {
    // 21 November and 19 December are Saturdays, 22 November is a Sunday.
    const std::tuple<const char*, KMyMoneyUnit, std::int64_t, WeekendMove, Days> cases[] = {
        {"2026-11-21", Week, 4, WeekendMove::None, {"2026-11-21", "2026-12-19"}},
        {"2026-11-21", Week, 4, WeekendMove::Before, {"2026-11-20", "2026-12-18"}},
        {"2026-11-21", Week, 4, WeekendMove::After, {"2026-11-23", "2026-12-21"}},
        {"2026-11-22", Month, 1, WeekendMove::Before, {"2026-11-20", "2026-12-22"}},
        {"2026-11-22", KMyMoneyUnit::Day, 27, WeekendMove::After, {"2026-11-23", "2026-12-21"}},
        {"2026-11-21", Once, 1, WeekendMove::After, {"2026-11-23"}},
    };
    for (const auto& [next, unit, every, move, days] : cases) {
        KMyMoneySchedule schedule = scheduleOf(next, unit, every, next);
        schedule.weekendMove = move;
        EXPECT_EQ(daysOf(schedule), days) << next << " every " << every << " of unit " << int(unit);
        EXPECT_EQ(textOfDay(occurrencesOf(schedule, month)[0].nominal), next);
    }
}

TEST(KMyMoneySteps, keepToTheLastDayOfTheMonth) {
    KMyMoneySchedule schedule = scheduleOf("2026-11-28", Month, 1, "2026-09-30");
    schedule.isLastDayOfMonth = true;
    const Period quarter{today, *dayOfText("2027-03-31")};
    EXPECT_EQ(daysOf(schedule, quarter),
              (Days{"2026-11-30", "2026-12-31", "2027-01-31", "2027-02-28", "2027-03-31"}));
    schedule.weekendMove = WeekendMove::Before;
    EXPECT_EQ(daysOf(schedule, quarter),
              (Days{"2026-11-30", "2026-12-31", "2027-01-29", "2027-02-26", "2027-03-31"}));
}

TEST(KMyMoneySteps, countOverdueOnesByTheLastDayOfTheStartsMonth) {
    struct Case {
        const char* start;
        const char* next;
        WeekendMove move;
        const char* today;
        Days days;
    };
    const Case cases[] = {
        {"2026-09-15", "2026-09-30", WeekendMove::None, "2026-10-30", {"2026-09-30", "2026-10-31"}},
        {"2026-09-15", "2026-09-30", WeekendMove::None, "2026-10-31", {"2026-09-30", "2026-10-30"}},
        {"2026-09-30", "2026-09-28", WeekendMove::None, "2026-10-31", {"2026-09-30", "2026-10-30"}},
        {"2026-02-28",
         "2026-09-30",
         WeekendMove::None,
         "2026-11-29",
         {"2026-09-30", "2026-10-28", "2026-11-28"}},
        {"2026-08-28", "2026-09-30", WeekendMove::None, "2026-10-31", {"2026-09-30", "2026-10-31"}},
        // 30 January 2027 is a Saturday, 28 February a Sunday.
        {"2026-09-30",
         "2026-12-28",
         WeekendMove::Before,
         "2027-02-27",
         {"2026-12-31", "2027-01-29", "2027-02-26"}},
        {"2026-09-30",
         "2026-12-28",
         WeekendMove::After,
         "2027-02-27",
         {"2026-12-31", "2027-02-01"}}, // the next one takes the place of March's
    };
    for (const auto& [start, next, move, now, days] : cases) {
        KMyMoneySchedule schedule = scheduleOf(next, Month, 1, start);
        schedule.isLastDayOfMonth = true;
        schedule.weekendMove = move;
        const bridge::Day day = *dayOfText(now);
        EXPECT_EQ(daysOf(schedule, {day, day + std::chrono::days(3)}), days) << start << " on " << now;
        // What tells them apart stays.
        for (const Occurrence& occurrence : occurrencesOf(schedule, {day, day}))
            EXPECT_EQ(occurrence.nominal, lastDayOfMonth(occurrence.nominal));
    }
}

TEST(KMyMoneySteps, countAnOverdueOneAlsoWhereNoneToComeIsWanted) {
    KMyMoneySchedule schedule = scheduleOf("2026-10-31", Month, 1, "2026-02-28");
    schedule.isLastDayOfMonth = true;
    EXPECT_EQ(daysOf(schedule, {*dayOfText("2026-11-29"), *dayOfText("2026-11-29")}),
              (Days{"2026-10-31", "2026-11-28"}));
}

// What the home page of KMyMoney 5.1.3 counts and lists: 31 October is a Saturday, 31 January and 28 February
// are Sundays, 31 July is a Saturday.
TEST(KMyMoneySteps, skipTheMonthIntoWhichTheLastDayWasMoved) {
    KMyMoneySchedule schedule = scheduleOf("2026-10-31", Month, 1, "2026-01-31");
    schedule.isLastDayOfMonth = true;
    schedule.weekendMove = WeekendMove::After;
    const auto from = [](const char* day) {
        const bridge::Day first = *dayOfText(day);
        return Period{first, first + std::chrono::days(31)};
    };
    EXPECT_EQ(daysOf(schedule, from("2026-11-21")), Days{"2026-11-02"});
    EXPECT_EQ(daysOf(schedule, from("2026-11-30")), (Days{"2026-11-02", "2026-12-31"}));
    EXPECT_EQ(daysOf(schedule, from("2027-03-01")),
              (Days{"2026-11-02", "2026-12-31", "2027-02-01", "2027-03-31"}));
    EXPECT_EQ(daysOf(schedule, from("2027-03-02")),
              (Days{"2026-11-02", "2026-12-31", "2027-02-01", "2027-03-01", "2027-03-31"}));
    EXPECT_EQ(daysOf(schedule, from("2027-08-03")),
              (Days{"2026-11-02", "2026-12-31", "2027-02-01", "2027-03-01", "2027-03-31", "2027-04-30",
                    "2027-05-31", "2027-06-30", "2027-08-02"}));
    schedule.weekendMove = WeekendMove::Before;
    EXPECT_EQ(daysOf(schedule, from("2027-03-01")),
              (Days{"2026-10-30", "2026-11-30", "2026-12-31", "2027-01-29", "2027-02-26", "2027-03-31"}));
}

TEST(KMyMoneySteps, finish) {
    KMyMoneySchedule once = scheduleOf("2026-11-10", Once);
    EXPECT_FALSE(isFinished(once)) << "never paid";
    once.lastPayment = dayOfText("2026-11-10");
    EXPECT_TRUE(isFinished(once));

    KMyMoneySchedule monthly = scheduleOf("2026-11-15", Month);
    monthly.lastPayment = dayOfText("2026-10-15");
    EXPECT_FALSE(isFinished(monthly));
    monthly.end = dayOfText("2026-11-15");
    EXPECT_FALSE(isFinished(monthly));
    EXPECT_EQ(daysOf(monthly), Days{"2026-11-15"});
    monthly.end = dayOfText("2026-11-14");
    EXPECT_TRUE(isFinished(monthly)) << "due after the end";
    KMyMoneySchedule paid = scheduleOf("2026-11-10", Month);
    paid.lastPayment = paid.end = dayOfText("2026-11-14");
    EXPECT_TRUE(isFinished(paid)) << "paid at the end, whatever is next";
    EXPECT_EQ(daysOf(monthly), Days{});
    monthly.lastPayment.reset();
    EXPECT_FALSE(isFinished(monthly));
    EXPECT_EQ(daysOf(monthly), Days{"2026-11-15"}) << "never paid, it is due all the same";
    monthly.next.reset();
    EXPECT_TRUE(isFinished(monthly));
}

TEST(KMyMoneySteps, endWithAnEndThatIsMovedToo) {
    KMyMoneySchedule schedule = scheduleOf("2026-11-23", Week);
    schedule.end = dayOfText("2026-12-05"); // a Saturday
    EXPECT_EQ(daysOf(schedule), (Days{"2026-11-23", "2026-11-30"}));
    schedule.weekendMove = WeekendMove::After; // the end is Monday 7 December then
    EXPECT_EQ(daysOf(schedule), (Days{"2026-11-23", "2026-11-30", "2026-12-07"}));
}

TEST(KMyMoneySteps, countWhatWasPaidAheadWhileItIsOverdueOnly) {
    KMyMoneySchedule schedule = scheduleOf("2026-10-16", Month, 1, "2026-09-16");
    schedule.paidAhead = {*dayOfText("2026-11-16"), *dayOfText("2026-12-16")};
    EXPECT_EQ(daysOf(schedule), (Days{"2026-10-16", "2026-11-16"}));
    schedule.paidAhead = {*dayOfText("2026-10-16")};
    EXPECT_EQ(daysOf(schedule), (Days{"2026-10-16", "2026-11-16", "2026-12-16"}));
}

TEST(KMyMoneySteps, areBounded) {
    EXPECT_EQ(daysOf(scheduleOf("0001-01-01", KMyMoneyUnit::Day)).size(), 400U);
    EXPECT_EQ(daysOf(scheduleOf("2025-01-01", KMyMoneyUnit::Day)).size(), 432U)
        << "the next ones are there still";
    for (const KMyMoneyUnit unit : {KMyMoneyUnit::Day, Week, HalfMonth, Month, Year}) {
        EXPECT_EQ(daysOf(scheduleOf("2026-11-20", unit, largest)), Days{"2026-11-20"});
        EXPECT_EQ(daysOf(scheduleOf("9999-12-31", unit), {today, *dayOfText("9999-12-31")}),
                  Days{"9999-12-31"});
    }
}

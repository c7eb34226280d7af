#include "bridge/sources/HomeBankSteps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using namespace bridge;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

struct Case {
    const char* name;
    const char* next;
    std::int64_t every;
    HomeBankUnit unit;
    bool skipsWeekends;
    std::int64_t gap;
    std::vector<std::string> following;
};

HomeBankSchedule scheduleOf(const Case& row) {
    return {*dayOfText(row.next), row.every, row.unit, std::nullopt, row.skipsWeekends, row.gap};
}

} // namespace

TEST(HomeBankSteps, followTheRules) {
    using enum HomeBankUnit;
    const Case cases[] = {
        {"days", "2026-11-20", 1, Day, false, 0, {"2026-11-21", "2026-11-22"}},
        {"days without weekends", "2026-11-20", 1, Day, true, 0, {"2026-11-23", "2026-11-24"}},
        {"weeks", "2026-12-24", 2, Week, false, 0, {"2027-01-07", "2027-01-21"}},
        {"weeks on a Saturday, skipped", "2026-11-28", 1, Week, true, 0, {"2026-12-07", "2026-12-14"}},
        {"months", "2026-11-12", 1, Month, false, 0, {"2026-12-12", "2027-01-12"}},
        {"months without weekends", "2026-11-12", 1, Month, true, 0, {"2026-12-14", "2027-01-14"}},
        {"31st", "2026-12-31", 1, Month, false, 0, {"2027-01-31", "2027-02-28", "2027-03-31", "2027-04-30"}},
        {"30 November for the 31st", "2026-11-30", 1, Month, false, 1, {"2026-12-31", "2027-01-31"}},
        {"29 January", "2027-01-29", 1, Month, false, 0, {"2027-02-28", "2027-03-29", "2027-04-29"}},
        {"a gap over the month's end", "2027-01-30", 1, Month, false, 1, {"2027-03-01"}},
        {"the same without weekends", "2027-01-30", 1, Month, true, 1, {"2027-03-02"}},
        {"leap day", "2028-02-29", 1, Year, false, 0, {"2029-02-28"}},
        {"years", "2026-02-15", 3, Year, false, 0, {"2029-02-15", "2032-02-15"}},
    };
    for (const Case& row : cases) {
        HomeBankSchedule schedule = scheduleOf(row);
        for (const std::string& day : row.following) {
            const auto following = advanced(schedule);
            ASSERT_TRUE(following) << row.name;
            EXPECT_EQ(textOfDay(following->next), day) << row.name;
            schedule = *following;
        }
    }
}

TEST(HomeBankSteps, keepTheDaysThatAMonthTookAway) {
    HomeBankSchedule schedule{*dayOfText("2027-01-31")};
    std::vector<std::int64_t> gaps;
    for (int step = 0; step < 4; ++step) {
        schedule = *advanced(schedule);
        gaps.push_back(schedule.gap);
    }
    EXPECT_EQ(gaps, (std::vector<std::int64_t>{3, 0, 1, 0}));
    EXPECT_EQ(advanced({*dayOfText("2027-01-30"), 1, HomeBankUnit::Month, {}, false, 1})->gap, 3);
}

// What the "Late" column of HomeBank 5.6.2 shows.
TEST(HomeBankSteps, areLateAsHomeBankCountsThem) {
    struct Row {
        const char* next;
        std::int64_t every;
        bool skipsWeekends;
        std::int64_t gap;
        std::vector<std::pair<const char*, long>> late;
    };
    const Row rows[] = {
        {"2027-01-31",
         1,
         false,
         0,
         {{"2027-03-27", 2}, {"2027-03-28", 3}, {"2027-05-02", 4}, {"2027-05-28", 5}}},
        {"2027-02-28",
         1,
         false,
         3,
         {{"2027-03-27", 1}, {"2027-03-28", 2}, {"2027-04-28", 3}, {"2027-08-31", 7}}},
        {"2027-01-30",
         1,
         false,
         1,
         {{"2027-02-28", 2}, {"2027-03-28", 3}, {"2027-04-27", 3}, {"2027-08-31", 8}}},
        {"2026-12-31",
         2,
         false,
         0,
         {{"2027-02-28", 2}, {"2027-04-27", 2}, {"2027-04-28", 3}, {"2027-08-28", 5}}},
        {"2026-12-31",
         2,
         true,
         0,
         {{"2027-02-28", 1}, {"2027-03-01", 2}, {"2027-05-02", 2}, {"2027-08-28", 4}}},
        {"2026-08-31", 6, false, 0, {{"2027-02-28", 2}, {"2027-05-31", 2}, {"2027-08-28", 3}}},
    };
    for (const Row& row : rows)
        for (const auto& [day, late] : row.late) {
            const bridge::Day today = *dayOfText(day);
            const Period period{today, today + std::chrono::days(31)};
            const auto occurrences = occurrencesOf(
                {*dayOfText(row.next), row.every, HomeBankUnit::Month, {}, row.skipsWeekends, row.gap},
                period);
            EXPECT_EQ(std::ranges::count_if(
                          occurrences, [&](const Occurrence& occurrence) { return occurrence.day <= today; }),
                      late)
                << row.next << " every " << row.every << " on " << day;
        }
}

TEST(HomeBankSteps, countALateOneByTheDayOnWhichItWillBeDue) {
    const HomeBankSchedule schedule{*dayOfText("2027-01-31")};
    const auto dayAt = [&](const char* today) {
        return occurrencesOf(schedule, {*dayOfText(today), *dayOfText("2027-04-01")})[2];
    };
    const bridge::Day end = *dayOfText("2027-03-31");
    EXPECT_EQ(dayAt("2027-03-27"), (Occurrence{end, end}));
    EXPECT_EQ(dayAt("2027-03-28"), (Occurrence{*dayOfText("2027-03-28"), end}));
    EXPECT_EQ(dayAt("2027-03-31"), (Occurrence{end, end}));
}

TEST(HomeBankSteps, endWithTheLastOneThatIsLeft) {
    HomeBankSchedule schedule{*dayOfText("2026-11-12")};
    schedule.left = 2;
    const auto last = advanced(schedule);
    ASSERT_TRUE(last);
    EXPECT_EQ(last->left, 1);
    EXPECT_FALSE(advanced(*last));
}

TEST(HomeBankSteps, endWithTheCalendar) {
    for (const HomeBankUnit unit :
         {HomeBankUnit::Day, HomeBankUnit::Week, HomeBankUnit::Month, HomeBankUnit::Year}) {
        EXPECT_FALSE(advanced({*dayOfText("9999-12-31"), 1, unit, {}, true, 3}));
        EXPECT_FALSE(advanced({*dayOfText("2026-11-12"), largest, unit, {}, false, 0}));
        EXPECT_FALSE(advanced({*dayOfText("2026-11-12"), 0, unit, {}, false, 0}));
        EXPECT_FALSE(advanced({*dayOfText("2026-11-12"), -largest, unit, {}, false, 0}));
    }
    EXPECT_FALSE(advanced({*dayOfText("9999-12-30"), 1, HomeBankUnit::Day, {}, false, 3})) << "by the gap";
}

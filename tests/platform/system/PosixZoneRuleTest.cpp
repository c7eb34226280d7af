#include "platform/system/PosixZoneRule.h"

#include "support/Moments.h"

#include <gtest/gtest.h>

using platform::PosixZoneRule;
using platform::ZoneOffset;

namespace {

std::int64_t utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
    return static_cast<std::int64_t>(support::utc(year, month, day, hour, minute, second));
}

struct Offset {
    const char* name;
    const char* text;
    std::int32_t seconds;
};

class FixedRuleTest : public testing::TestWithParam<Offset> {};

struct Summer {
    const char* name;
    const char* text;
    std::int64_t start; // the first moment of summer time
    std::int64_t end;   // the first moment after it
    std::int32_t offset;
    std::int32_t standard;
};

class SummerRuleTest : public testing::TestWithParam<Summer> {};

struct Text {
    const char* name;
    const char* text;
};

class BrokenRuleTest : public testing::TestWithParam<Text> {};

} // namespace

TEST_P(FixedRuleTest, hasOneOffset) {
    const auto rule = PosixZoneRule::fromText(GetParam().text);
    ASSERT_TRUE(rule);
    EXPECT_EQ(rule->offsetAt(utc(2026, 7, 10)), (ZoneOffset{GetParam().seconds, ZoneOffset::never}));
}

INSTANTIATE_TEST_SUITE_P(
    PosixZoneRule, FixedRuleTest,
    testing::Values(Offset{"utc", "UTC0", 0}, Offset{"western", "EST5", -5 * 3600},
                    Offset{"plusIsWest", "GMT+3", -3 * 3600}, Offset{"eastern", "IST-5:30", 19800},
                    Offset{"withSeconds", "LMT-0:53:28", 3208}, Offset{"twoDigits", "ABC-09", 9 * 3600},
                    Offset{"numericName", "<+03>-3", 3 * 3600},
                    Offset{"numericNameInTheWest", "<-03>3", -3 * 3600},
                    Offset{"longNumericName", "<+1245>-12:45", 45900},
                    Offset{"lettersInBrackets", "<abc>1", -3600}, Offset{"longName", "Middle-1", 3600},
                    Offset{"aWholeDay", "ABC24:59:59", -89999}),
    [](const auto& row) { return row.param.name; });

TEST_P(SummerRuleTest, hasAnotherOffsetInSummer) {
    const auto& row = GetParam();
    const auto rule = PosixZoneRule::fromText(row.text);
    ASSERT_TRUE(rule);
    EXPECT_EQ(rule->offsetAt(row.start - 1), (ZoneOffset{row.standard, row.start}));
    EXPECT_EQ(rule->offsetAt(row.start), (ZoneOffset{row.offset, row.end}));
    EXPECT_EQ(rule->offsetAt(row.end - 1), (ZoneOffset{row.offset, row.end}));
    EXPECT_EQ(rule->offsetAt(row.end).seconds, row.standard);
    EXPECT_GT(rule->offsetAt(row.end).end, row.end + 86400);
}

INSTANTIATE_TEST_SUITE_P(
    PosixZoneRule, SummerRuleTest,
    testing::Values(
        Summer{"lastSundays", "CET-1CEST,M3.5.0,M10.5.0/3", utc(2026, 3, 29, 1), utc(2026, 10, 25, 1), 7200,
               3600},
        Summer{"weeksOfTheMonth", "EST5EDT,M3.2.0,M11.1.0", utc(2026, 3, 8, 7), utc(2026, 11, 1, 6), -14400,
               -18000},
        Summer{"datesOfTheUnitedStatesIfThereAreNone", "ABC5DEF", utc(2026, 3, 8, 7), utc(2026, 11, 1, 6),
               -14400, -18000},
        Summer{"offsetButNoDates", "ABC5DEF3", utc(2026, 3, 8, 7), utc(2026, 11, 1, 5), -10800, -18000},
        Summer{"southernSummer", "AEST-10AEDT,M10.1.0,M4.1.0/3", utc(2026, 10, 3, 16), utc(2027, 4, 3, 16),
               39600, 36000},
        Summer{"offsetOfItsOwn", "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", utc(2026, 10, 3, 15, 30),
               utc(2027, 4, 3, 15), 39600, 37800},
        Summer{"earlierInSummer", "IST-1GMT0,M10.5.0,M3.5.0/1", utc(2026, 10, 25, 1), utc(2027, 3, 28, 1), 0,
               3600},
        Summer{"timesBeyondADay", "EET-2EEST,M3.4.4/50,M10.4.4/50", utc(2026, 3, 28), utc(2026, 10, 23, 23),
               10800, 7200},
        Summer{"negativeTime", "<-02>2<-01>,M3.5.0/-1,M10.5.0/0", utc(2026, 3, 29, 1), utc(2026, 10, 25, 1),
               -3600, -7200},
        Summer{"timeWithSeconds", "ABC0DEF,M3.5.0/1:02:03,M10.5.0/-1:02:03", utc(2026, 3, 29, 1, 2, 3),
               utc(2026, 10, 24, 21, 57, 57), 3600, 0},
        Summer{"aWeekOfHours", "ABC0DEF,M3.2.0/-167,M11.1.0/+167", utc(2026, 3, 1, 1), utc(2026, 11, 7, 22),
               3600, 0},
        Summer{"julianDays", "ABC0DEF,J60/0,J365/0", utc(2026, 3, 1), utc(2026, 12, 30, 23), 3600, 0},
        Summer{"julianDaysOfALeapYear", "ABC0DEF,J60/0,J365/0", utc(2028, 3, 1), utc(2028, 12, 30, 23), 3600,
               0},
        Summer{"julianDayBeforeTheLeapDay", "ABC0DEF,J59/0,J60/0", utc(2028, 2, 28), utc(2028, 2, 29, 23),
               3600, 0},
        Summer{"daysOfTheYear", "ABC0DEF,59/0,300/0", utc(2026, 3, 1), utc(2026, 10, 27, 23), 3600, 0},
        Summer{"daysOfALeapYear", "ABC0DEF,59/0,300/0", utc(2028, 2, 29), utc(2028, 10, 26, 23), 3600, 0},
        Summer{"overTheEndOfTheYear", "ABC0DEF,J365/0,J10/0", utc(2026, 12, 31), utc(2027, 1, 9, 23), 3600,
               0},
        Summer{"startBeforeItsYear", "ABC0DEF,0/-48,J10/0", utc(2025, 12, 30), utc(2026, 1, 9, 23), 3600, 0},
        Summer{"endAfterItsYear", "ABC0DEF,J300/0,J365/73", utc(2026, 10, 27), utc(2027, 1, 3), 3600, 0}),
    [](const auto& row) { return row.param.name; });

TEST(PosixZoneRuleTest, isUtcIfNothingIsSaid) {
    EXPECT_EQ(PosixZoneRule().offsetAt(utc(2026, 7, 10)), (ZoneOffset{0, ZoneOffset::never}));
}

// RFC 8536, 3.3.1: summer time all year starts on 1 January, 00:00, and ends a year later.
TEST(PosixZoneRuleTest, mayHaveSummerAllYear) {
    const auto rule = PosixZoneRule::fromText("EST5EDT,0/0,J365/25");
    ASSERT_TRUE(rule);
    for (std::int64_t moment = utc(2026, 12, 30); moment < utc(2027, 1, 3); moment += 1800)
        ASSERT_EQ(rule->offsetAt(moment).seconds, -14400) << moment;
}

TEST(PosixZoneRuleTest, hasNoSummerIfItEndsAsItStarts) {
    const auto rule = PosixZoneRule::fromText("ABC0DEF,J100/0,J100/1");
    ASSERT_TRUE(rule);
    for (int day = 0; day < 366; ++day)
        ASSERT_EQ(rule->offsetAt(utc(2026, 1, 1) + day * 86400).seconds, 0) << day;
}

TEST(PosixZoneRuleTest, countsInAllYears) {
    const auto rule = PosixZoneRule::fromText("CET-1CEST,M3.5.0,M10.5.0/3");
    ASSERT_TRUE(rule);
    constexpr std::int64_t fourCenturies = 146097 * 86400LL;
    for (const std::int64_t cycles : {-680, -5, 0, 5, 680}) { // 400 years each: to the year 274026
        const std::int64_t start = utc(2026, 3, 29, 1) + cycles * fourCenturies;
        EXPECT_EQ(rule->offsetAt(start - 1), (ZoneOffset{3600, start})) << cycles;
        EXPECT_EQ(rule->offsetAt(start), (ZoneOffset{7200, utc(2026, 10, 25, 1) + cycles * fourCenturies}))
            << cycles;
    }
    EXPECT_EQ(rule->offsetAt(utc(1970, 1, 1)), (ZoneOffset{3600, utc(1970, 3, 29, 1)}));
    EXPECT_EQ(rule->offsetAt(utc(1969, 12, 31, 23)), (ZoneOffset{3600, utc(1970, 3, 29, 1)}));
}

TEST_P(BrokenRuleTest, isNone) {
    EXPECT_FALSE(PosixZoneRule::fromText(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    PosixZoneRule, BrokenRuleTest,
    testing::Values(Text{"empty", ""}, Text{"zoneName", "Europe/Berlin"}, Text{"noOffset", "CET"},
                    Text{"shortName", "AB3"}, Text{"noName", "-3"}, Text{"unfinishedBracket", "<-03"},
                    Text{"bracketWithoutOffset", "<-03>"}, Text{"shortNameInBrackets", "<+3>-3"},
                    Text{"signInAName", "A+C3"}, Text{"hoursBeyondADay", "ABC25"},
                    Text{"hugeNumber", "ABC99999999999"}, Text{"minutesMissing", "ABC3:"},
                    Text{"minutesBeyondAnHour", "ABC3:60"}, Text{"secondsBeyondAMinute", "ABC3:00:60"},
                    Text{"twoSigns", "ABC-+3"}, Text{"spaceAtTheEnd", "ABC3 "}, Text{"colonInFront", ":ABC3"},
                    Text{"shortSummerName", "CET-1CE,M3.5.0,M10.5.0"},
                    Text{"noEndOfSummer", "CET-1CEST,M3.5.0"}, Text{"nothingAfterTheComma", "CET-1CEST,"},
                    Text{"noStartOfSummer", "CET-1CEST,,M10.5.0"},
                    Text{"datesWithoutSummer", "CET-1,M3.5.0,M10.5.0"},
                    Text{"month0", "CET-1CEST,M0.5.0,M10.5.0"}, Text{"month13", "CET-1CEST,M3.5.0,M13.5.0"},
                    Text{"week0", "CET-1CEST,M3.0.0,M10.5.0"}, Text{"week6", "CET-1CEST,M3.6.0,M10.5.0"},
                    Text{"weekday7", "CET-1CEST,M3.5.7,M10.5.0"},
                    Text{"weekdayMissing", "CET-1CEST,M3.5,M10.5.0"}, Text{"julianDay0", "CET-1CEST,J0,J365"},
                    Text{"julianDay366", "CET-1CEST,J1,J366"}, Text{"julianDayMissing", "CET-1CEST,J,J365"},
                    Text{"day366", "CET-1CEST,0,366"}, Text{"timeMissing", "CET-1CEST,M3.5.0/,M10.5.0"},
                    Text{"timeBeyondAWeek", "CET-1CEST,M3.5.0/168,M10.5.0"},
                    Text{"moreAtTheEnd", "CET-1CEST,M3.5.0,M10.5.0/3,"}, Text{"noise", "\xff\xfe%s"}),
    [](const auto& row) { return row.param.name; });

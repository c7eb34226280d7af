#include "platform/system/Calendar.h"

#include "platform/system/Region.h"
#include "support/Moments.h"
#include "support/RegionOverride.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <random>

using platform::Calendar;
using support::RegionOverride;
using support::utc;

namespace {

constexpr double day = 86400.0;
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

// All calendars of ICU.
constexpr const char* calendars[] = {
    "gregorian", "buddhist",     "japanese",      "persian",          "hebrew",
    "islamic",   "islamic-tbla", "islamic-civil", "islamic-umalqura", "indian",
    "chinese",   "dangi",        "coptic",        "ethiopic",         "ethiopic-amete-alem",
    "roc",       "iso8601"};

std::string localeWith(const char* calendar) {
    return std::string("en_US@calendar=") + calendar;
}

struct Wrap {
    const char* name;
    double date;
    std::int64_t days;
    double result;
};

class WrappingTableTest : public testing::TestWithParam<Wrap> {
protected:
    RegionOverride region{{"en_US", "UTC"}};
};

} // namespace

TEST_P(WrappingTableTest, staysInItsMonth) {
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(GetParam().date, GetParam().days), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Calendar, WrappingTableTest,
    testing::Values(Wrap{"withinTheMonth", utc(2026, 3, 10, 15), 3, utc(2026, 3, 13, 15)},
                    Wrap{"noDays", utc(2026, 3, 10, 15), 0, utc(2026, 3, 10, 15)},
                    Wrap{"lastDayOfTheMonth", utc(2026, 1, 31, 8), 1, utc(2026, 1, 1, 8)},
                    Wrap{"firstDayBackwards", utc(2026, 1, 1, 8), -1, utc(2026, 1, 31, 8)},
                    Wrap{"lastDayOfTheYear", utc(2026, 12, 31), 1, utc(2026, 12, 1)},
                    Wrap{"leapDay", utc(2028, 2, 28), 1, utc(2028, 2, 29)},
                    Wrap{"afterTheLeapDay", utc(2028, 2, 29), 1, utc(2028, 2, 1)},
                    Wrap{"februaryOfACommonYear", utc(2026, 2, 28), 1, utc(2026, 2, 1)},
                    Wrap{"moreThanAMonth", utc(2026, 4, 15), 40, utc(2026, 4, 25)},
                    Wrap{"aWholeMonth", utc(2026, 4, 15), 30, utc(2026, 4, 15)},
                    Wrap{"aWholeMonthBackwards", utc(2026, 4, 15), -30, utc(2026, 4, 15)},
                    Wrap{"largest32Bits", utc(2026, 4, 15), 2147483647, utc(2026, 4, 22)},
                    Wrap{"smallest32Bits", utc(2026, 4, 15), -2147483648LL, utc(2026, 4, 7)},
                    Wrap{"beyond32Bits", utc(2026, 4, 15), 4294967296LL, utc(2026, 4, 1)},
                    Wrap{"largest64Bits", utc(2026, 4, 15), largest, utc(2026, 4, 22)},
                    Wrap{"smallest64Bits", utc(2026, 4, 15), smallest, utc(2026, 4, 7)},
                    Wrap{"before1970", utc(1969, 12, 31, 23, 59, 59), 1, utc(1969, 12, 1, 23, 59, 59)}),
    [](const auto& row) { return row.param.name; });

// Compares with another implementation of the same rule.
TEST(WrappingTest, agreesWithPlainArithmeticOnTheDayOfTheMonth) {
    const RegionOverride region({"en_US", "UTC"});
    std::mt19937_64 random(20260310);
    std::uniform_int_distribution<std::int64_t> seconds(-12'000'000'000, 250'000'000'000); // 1589 to 9892
    std::uniform_int_distribution<std::int64_t> amounts(smallest, largest);
    for (int i = 0; i < 2000; ++i) {
        const std::int64_t second = seconds(random);
        const std::int64_t days = amounts(random);
        const auto start =
            std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds{std::chrono::seconds{second}});
        const std::chrono::year_month_day date{start};
        const auto length = static_cast<unsigned>((date.year() / date.month() / std::chrono::last).day());
        const std::int64_t index = static_cast<std::int64_t>(static_cast<unsigned>(date.day())) - 1;
        const std::int64_t wrapped = ((index + days % length) % length + length) % length;
        const double expected = static_cast<double>(second) + static_cast<double>(wrapped - index) * day;
        ASSERT_EQ(Calendar::dateByAddingDaysWrapping(static_cast<double>(second), days), expected)
            << second << " and " << days << " days";
    }
}

TEST(WrappingTest, keepsTheFractionOfASecond) {
    const RegionOverride region({"en_US", "UTC"});
    const double date = utc(2026, 3, 10, 23, 59, 59.9999);
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(date, 3), date + 3 * day);
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(date, 0), date);
}

TEST(WrappingTest, takesADateJustBeforeMidnightInItsOwnMonth) {
    const RegionOverride region({"en_US", "UTC"});
    const double date = std::nextafter(utc(2026, 2, 1), 0); // still 31 January
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(date, 1), date - 30 * day);
}

TEST(WrappingTest, keepsTheTimeOfDayAcrossAChangeOfTheClocks) {
    const RegionOverride region({"de_DE", "Europe/Berlin"});
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(utc(2026, 3, 28, 12 - 1), 1), utc(2026, 3, 29, 12 - 2));
}

TEST(WrappingTest, aTimeOfDayThatIsMissingIsAnHourLater) {
    const RegionOverride region({"de_DE", "Europe/Berlin"});
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(utc(2026, 3, 28, 2 - 1, 30), 1),
              utc(2026, 3, 29, 3 - 2, 30));
}

TEST(WrappingTest, aTimeOfDayThatComesTwiceIsTheFirst) {
    const RegionOverride region({"de_DE", "Europe/Berlin"});
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(utc(2026, 10, 24, 2 - 2, 30), 1),
              utc(2026, 10, 25, 2 - 2, 30));
}

TEST(WrappingTest, noDaysLeaveTheSecondOfTwoEqualTimes) {
    const RegionOverride region({"de_DE", "Europe/Berlin"});
    const double second = utc(2026, 10, 25, 2 - 1, 30);
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(second, 0), second);
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(second, 31), second);
}

TEST(WrappingTest, wrapsAroundAPersianMonth) {
    const RegionOverride region({"fa_IR@calendar=persian", "UTC"});
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(utc(2026, 3, 20), 1),
              utc(2026, 2, 20)); // 29 and 1 Esfand 1404
}

TEST(WrappingTest, wrapsAcrossTheChangeOfAJapaneseEra) {
    const RegionOverride region({"ja_JP@calendar=japanese", "UTC"});
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(utc(1989, 1, 20), 15), utc(1989, 1, 4)); // Heisei to Showa
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(utc(1989, 1, 4), 16), utc(1989, 1, 20));
}

// October 1582 had 21 days: 1 to 4 and 15 to 31.
TEST(WrappingTest, wrapsAroundTheMonthThatLacksDays) {
    const RegionOverride region({"en_US", "UTC"});
    const double lastOfOctober = utc(1582, 10, 31);
    const double firstOfOctober = utc(1582, 10, 11); // in the Gregorian calendar carried back
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(lastOfOctober, 1), firstOfOctober);
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(lastOfOctober, 1 + 21 * 1'000'000'000LL), firstOfOctober);
}

TEST(WrappingTest, aWholeTurnLeavesEveryDayOfEveryCalendar) {
    for (const char* calendar : calendars) {
        const RegionOverride region({localeWith(calendar), "UTC"});
        for (double date = utc(2023, 1, 1, 12); date < utc(2025, 1, 1); date += 29 * day)
            for (const std::int64_t days : {std::int64_t{5}, largest, smallest}) {
                const auto moved = Calendar::dateByAddingDaysWrapping(date, days);
                ASSERT_TRUE(moved);
                ASSERT_LT(std::abs(*moved - date), 31 * day) << calendar << " at " << date;
                const std::int64_t back = days == smallest ? largest : -days;
                const std::int64_t rest = days == smallest ? 1 : 0;
                const auto half = Calendar::dateByAddingDaysWrapping(*moved, back);
                ASSERT_EQ(Calendar::dateByAddingDaysWrapping(*half, rest), date)
                    << calendar << " at " << date;
            }
    }
}

TEST(StartOfDayTest, isMidnightOfTheLocalDay) {
    const RegionOverride region({"en_US", "America/New_York"});
    EXPECT_EQ(Calendar::startOfDay(utc(2026, 3, 10, 15 + 4)), utc(2026, 3, 10, 4));
    EXPECT_EQ(Calendar::startOfDay(utc(2026, 3, 10, 4)), utc(2026, 3, 10, 4));
    EXPECT_EQ(Calendar::startOfDay(utc(2026, 3, 10, 3, 59, 59)), utc(2026, 3, 9, 4));
}

TEST(StartOfDayTest, aFractionNeverReachesTheNextDay) {
    const RegionOverride region({"en_US", "UTC"});
    EXPECT_EQ(Calendar::startOfDay(utc(2026, 3, 10, 23, 59, 59.9999)), utc(2026, 3, 10));
    EXPECT_EQ(Calendar::startOfDay(std::nextafter(utc(2026, 3, 11), 0)), utc(2026, 3, 10));
    EXPECT_EQ(Calendar::startOfDay(-1e-9), utc(1969, 12, 31));
    EXPECT_EQ(Calendar::startOfDay(-5e-324), utc(1969, 12, 31));
}

TEST(StartOfDayTest, isOneOClockWhereMidnightIsMissingInSaoPaulo) {
    const RegionOverride region({"pt_BR", "America/Sao_Paulo"});
    EXPECT_EQ(Calendar::startOfDay(utc(2018, 11, 4, 12 + 2)), utc(2018, 11, 4, 1 + 2));
    EXPECT_EQ(Calendar::startOfDay(utc(2018, 11, 3, 12 + 3)), utc(2018, 11, 3, 3));
}

TEST(StartOfDayTest, isOneOClockWhereMidnightIsMissingInBeirut) {
    const RegionOverride region({"ar_LB@calendar=gregorian", "Asia/Beirut"});
    EXPECT_EQ(Calendar::startOfDay(utc(2023, 3, 26, 12 - 3)), utc(2023, 3, 26, 1 - 3));
}

TEST(StartOfDayTest, isTheFirstMidnightWhereItComesTwiceInHavana) {
    const RegionOverride region({"es_CU", "America/Havana"});
    const double first = utc(2024, 11, 3, 4);
    EXPECT_EQ(Calendar::startOfDay(utc(2024, 11, 3, 12 + 5)), first);
    EXPECT_EQ(Calendar::startOfDay(utc(2024, 11, 3, 4, 30)), first); // 00:30, the first time
    EXPECT_EQ(Calendar::startOfDay(utc(2024, 11, 3, 5, 30)), first); // 00:30, the second time
}

TEST(StartOfDayTest, agreesInEveryCalendar) {
    std::mt19937_64 random(20260310);
    std::uniform_int_distribution<std::int64_t> seconds(-60'000'000'000, 250'000'000'000); // years 68 to 9892
    for (const char* calendar : calendars) {
        const RegionOverride region({localeWith(calendar), "UTC"});
        for (int i = 0; i < 200; ++i) {
            const auto date = static_cast<double>(seconds(random));
            ASSERT_EQ(Calendar::startOfDay(date), std::floor(date / day) * day) << calendar << " at " << date;
        }
    }
}

TEST(StartOfDayTest, keepsTheLeapMonthOfTheChineseCalendar) {
    const RegionOverride region({"zh_CN@calendar=chinese", "Asia/Shanghai"});
    // The second second month of 2023.
    EXPECT_EQ(Calendar::startOfDay(utc(2023, 4, 1, 12 - 8)), utc(2023, 4, 1, -8));
}

TEST(StartOfDayTest, keepsTheEra) {
    const RegionOverride japanese({"ja_JP@calendar=japanese", "Asia/Tokyo"});
    EXPECT_EQ(Calendar::startOfDay(utc(1989, 1, 5, 12 - 9)), utc(1989, 1, 5, -9));   // Showa 64
    EXPECT_EQ(Calendar::startOfDay(utc(1989, 1, 20, 12 - 9)), utc(1989, 1, 20, -9)); // Heisei 1
    const RegionOverride gregorian({"en_US", "UTC"});
    EXPECT_EQ(Calendar::startOfDay(utc(-43, 3, 13, 12)), utc(-43, 3, 13)); // 44 BC
}

TEST(StartOfDayTest, theThaiDayIsTheSameDay) {
    const RegionOverride region({"th_TH", "Asia/Bangkok"});
    EXPECT_EQ(Calendar::startOfDay(utc(2026, 3, 10, 12 - 7)), utc(2026, 3, 10, -7));
}

TEST(CalendarTest, aMomentThatIsNoneYieldsNone) {
    const RegionOverride region({"en_US", "UTC"});
    for (const double date : {notANumber, infinite, -infinite, 1e300, -1e300, 8.64e12 + 1, -8.64e12 - 1}) {
        EXPECT_EQ(Calendar::startOfDay(date), std::nullopt) << date;
        EXPECT_EQ(Calendar::dateByAddingDaysWrapping(date, 1), std::nullopt) << date;
    }
}

TEST(CalendarTest, theOutermostMomentsGiveANearDateOrNoneInEveryCalendar) {
    for (const char* calendar : calendars) {
        const RegionOverride region({localeWith(calendar), "UTC"});
        for (const double date : {8.64e12, -8.64e12}) {
            const auto moved = Calendar::dateByAddingDaysWrapping(date, 1);
            EXPECT_TRUE(!moved || std::abs(*moved - date) <= 32 * day) << calendar << " at " << date;
            const auto start = Calendar::startOfDay(date);
            EXPECT_TRUE(!start || std::abs(*start - date) <= 2 * day) << calendar << " at " << date;
        }
    }
}

TEST(CalendarTest, anUnknownLocaleAndZoneStillCount) {
    const RegionOverride region({"xx_YY@calendar=nonsense", "Foo/Bar"});
    EXPECT_EQ(Calendar::startOfDay(utc(2026, 3, 10, 12)), utc(2026, 3, 10));
}

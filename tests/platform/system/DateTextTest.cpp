#include "platform/system/DateText.h"

#include "platform/system/Region.h"
#include "support/Environment.h"
#include "support/Moments.h"
#include "support/RegionOverride.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using platform::mediumDateText;
using support::EnvironmentVariable;
using support::RegionOverride;
using support::utc;

namespace {

struct Row {
    const char* name;
    const char* locale;
    const char* text; // of 10 March 2026
};

class DateTextTableTest : public testing::TestWithParam<Row> {};

std::string textOf(double date) {
    return mediumDateText(date).toStdString();
}

} // namespace

TEST_P(DateTextTableTest, isTheMediumDate) {
    const RegionOverride region({GetParam().locale, "UTC"});
    EXPECT_EQ(textOf(utc(2026, 3, 10, 12)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    DateText, DateTextTableTest,
    testing::Values(Row{"posix", "en_US_POSIX", "Mar 10, 2026"}, Row{"american", "en_US", "Mar 10, 2026"},
                    Row{"british", "en_GB", "10 Mar 2026"}, Row{"german", "de_DE", "10.03.2026"},
                    Row{"brazilian", "pt_BR", "10 de mar. de 2026"}, Row{"japanese", "ja_JP", "2026/03/10"},
                    Row{"japaneseEra", "ja_JP@calendar=japanese", "令和8年3月10日"},
                    Row{"thaiBuddhist", "th_TH", "10 มี.ค. 2569"},
                    Row{"thaiGregorian", "th_TH@calendar=gregorian", "10 มี.ค. 2026"},
                    Row{"persian", "fa_IR", "۱۹ اسفند ۱۴۰۴"}),
    [](const auto& row) { return row.param.name; });

TEST(DateTextTest, showsTheLocalDay) {
    const double date = utc(2026, 3, 10, 2);
    const RegionOverride west({"en_US", "America/New_York"});
    EXPECT_EQ(textOf(date), "Mar 9, 2026");
    const RegionOverride east({"en_US", "Asia/Tokyo"});
    EXPECT_EQ(textOf(date), "Mar 10, 2026");
}

TEST(DateTextTest, aFractionNeverReachesTheNextDay) {
    const RegionOverride region({"en_US", "UTC"});
    EXPECT_EQ(textOf(utc(2026, 3, 10, 23, 59, 59.9999)), "Mar 10, 2026");
    EXPECT_EQ(textOf(std::nextafter(utc(2026, 3, 11), 0)), "Mar 10, 2026");
    EXPECT_EQ(textOf(utc(2026, 3, 11)), "Mar 11, 2026");
}

TEST(DateTextTest, aFractionBefore1970StaysInItsDay) {
    const RegionOverride region({"en_US", "UTC"});
    EXPECT_EQ(textOf(-0.0001), "Dec 31, 1969");
    EXPECT_EQ(textOf(-5e-324), "Dec 31, 1969");
    EXPECT_EQ(textOf(-0.0), "Jan 1, 1970");
    EXPECT_EQ(textOf(utc(1900, 1, 1) - 0.0001), "Dec 31, 1899");
}

// Dates before October 1582 are in the Julian calendar.
TEST(DateTextTest, showsTheFirstYear) {
    const RegionOverride region({"en_US", "UTC"});
    EXPECT_EQ(textOf(utc(1, 1, 3)), "Jan 5, 1");
}

TEST(DateTextTest, showsTheYear9999) {
    const RegionOverride region({"en_US", "UTC"});
    EXPECT_EQ(textOf(utc(9999, 12, 31, 23, 59, 59.9999)), "Dec 31, 9999");
}

TEST(DateTextTest, isEmptyForAMomentThatIsNone) {
    const RegionOverride region({"en_US", "UTC"});
    using Limits = std::numeric_limits<double>;
    for (const double date : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), Limits::max(),
                              Limits::lowest(), 1e15, -1e15})
        EXPECT_EQ(textOf(date), "") << date;
}

TEST(DateTextTest, theOutermostDaysHaveATextInEveryCalendar) {
    for (const char* calendar : {"gregorian", "buddhist", "japanese", "persian", "hebrew", "islamic",
                                 "islamic-umalqura", "chinese", "dangi", "coptic", "ethiopic", "roc"}) {
        const RegionOverride region({std::string("en_US@calendar=") + calendar, "UTC"});
        EXPECT_NE(textOf(8.64e12), "") << calendar;
        EXPECT_NE(textOf(-8.64e12), "") << calendar;
    }
}

TEST(DateTextTest, seesAChangeOfTheEnvironment) {
    const EnvironmentVariable all("LC_ALL", "de_DE.UTF-8");
    const EnvironmentVariable tz("TZ", "Asia/Tokyo");
    const double date = utc(2026, 3, 10, 23);
    EXPECT_EQ(textOf(date), "11.03.2026");
    tz.set("America/New_York");
    EXPECT_EQ(textOf(date), "10.03.2026");
    all.set("C.UTF-8");
    EXPECT_EQ(textOf(date), "Mar 10, 2026");
}

TEST(DateTextTest, seesAnotherCalendarOfTheSameLanguage) {
    const EnvironmentVariable all("LC_ALL", "th_TH.UTF-8@calendar=gregorian");
    const EnvironmentVariable tz("TZ", "UTC");
    EXPECT_EQ(textOf(utc(2026, 3, 10)), "10 มี.ค. 2026");
    all.set("th_TH.UTF-8@calendar=buddhist");
    EXPECT_EQ(textOf(utc(2026, 3, 10)), "10 มี.ค. 2569");
}

#include "ctl/Moments.h"
#include "ctl/CtlTest.h"
#include "support/RegionOverride.h"

#include <cmath>
#include <limits>

namespace ctl {
namespace {

using exchange::utc;
using platform::Region;

// The clock stands at 2026-03-10 15:00 UTC.
struct Row {
    const char* name;
    const char* text;
    const char* timeZone;
    double moment;
};

class MomentsTable : public CtlTest, public testing::WithParamInterface<Row> {};

TEST_P(MomentsTable, areRead) {
    const support::RegionOverride here(Region{"en_US", GetParam().timeZone});
    const std::optional<double> moment = momentOfText(GetParam().text);
    ASSERT_TRUE(moment);
    EXPECT_EQ(*moment, GetParam().moment);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MomentsTable,
    testing::Values(Row{"Number", "1773165600.5", "UTC", 1773165600.5},
                    Row{"NegativeNumber", "-1", "UTC", -1},
                    Row{"Infinity", "inf", "UTC", std::numeric_limits<double>::infinity()},
                    Row{"Today", "today", "UTC", utc(2026, 3, 10)},
                    Row{"TodayWithATime", "today 18:00", "UTC", utc(2026, 3, 10, 18)},
                    Row{"InThreeDays", "today+3 18:00", "UTC", utc(2026, 3, 13, 18)},
                    Row{"TwoDaysAgo", "today-2", "UTC", utc(2026, 3, 8)},
                    Row{"OverTheMonthsEnd", "today+22", "UTC", utc(2026, 4, 1)},
                    Row{"WithSeconds", "today 18:00:30", "UTC", utc(2026, 3, 10, 18, 0, 30)},
                    Row{"Day", "2026-03-10", "UTC", utc(2026, 3, 10)},
                    Row{"DayWithATime", "2026-03-10 18:00", "Europe/Berlin", utc(2026, 3, 10, 17)},
                    Row{"DayInSummer", "2026-07-10 18:00", "Europe/Berlin", utc(2026, 7, 10, 16)},
                    Row{"TodayFarInTheEast", "today", "Pacific/Auckland", utc(2026, 3, 10, 11)},
                    Row{"OverTheChangeOfClocks", "today+20 12:00", "Europe/Berlin", utc(2026, 3, 30, 10)},
                    Row{"MidnightLeftOut", "2018-11-04", "America/Sao_Paulo", utc(2018, 11, 4, 3)},
                    Row{"HourLeftOut", "2026-03-29 02:30", "Europe/Berlin", utc(2026, 3, 29, 1, 30)},
                    Row{"HourTwice", "2026-10-25 02:30", "Europe/Berlin", utc(2026, 10, 25, 0, 30)},
                    Row{"MidnightTwice", "2024-11-03", "America/Havana", utc(2024, 11, 3, 4)},
                    Row{"DayInTheSummerOfARule", "2026-07-10 18:00", "CET-1CEST,M3.5.0,M10.5.0/3",
                        utc(2026, 7, 10, 16)}),
    [](const auto& row) { return row.param.name; });

class MomentsTest : public CtlTest {};

TEST_F(MomentsTest, areNotGuessed) {
    for (const char* text : {"", " ", "tomorrow", "today+", "today+-1", "today-", "today+x", "today 25:00",
                             "today 6pm", "todayx", "2026-02-30", "2026-3-1", "10.03.2026",
                             "2026-03-10T18:00", "2026-03-10  18:00", "0x10", "12 ", "today+99999999999"})
        EXPECT_FALSE(momentOfText(text)) << text;
}

TEST_F(MomentsTest, areWrittenAsLocalDates) {
    EXPECT_EQ(textOfMoment(utc(2026, 3, 10, 18, 0, 59) + 0.9), "2026-03-10 18:00");
    const support::RegionOverride here(Region{"en_US", "Asia/Tehran"});
    EXPECT_EQ(textOfMoment(utc(2026, 3, 10, 22)), "2026-03-11 01:30");
    EXPECT_EQ(textOfMoment(-0.5), "1970-01-01 03:29");
}

TEST_F(MomentsTest, areWrittenAsNumbersBeyondTheCalendar) {
    EXPECT_EQ(textOfMoment(1e300), "1e+300");
    EXPECT_EQ(textOfMoment(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(textOfMoment(std::nan("")), "nan");
}

TEST_F(MomentsTest, areWrittenExactlyAsTheyAreReadBack) {
    EXPECT_EQ(exactTextOfMoment(utc(2026, 3, 10, 18)), "2026-03-10 18:00");
    EXPECT_EQ(exactTextOfMoment(utc(2026, 3, 10, 18, 0, 5)), "2026-03-10 18:00:05");
    EXPECT_EQ(exactTextOfMoment(utc(2026, 3, 10, 18) + 0.5), "1773165600.5");
    EXPECT_EQ(exactTextOfMoment(1e300), "1e+300");
    EXPECT_EQ(exactTextOfMoment(std::numeric_limits<double>::quiet_NaN()), "nan");
    const support::RegionOverride berlin(Region{"en_US", "Europe/Berlin"});
    EXPECT_EQ(exactTextOfMoment(utc(2026, 10, 25, 0, 30)), "2026-10-25 02:30") << "the first of two";
    EXPECT_EQ(exactTextOfMoment(utc(2026, 10, 25, 1, 30)), "1792891800") << "the second";
}

} // namespace
} // namespace ctl

#include "exchange/ExchangeTest.h"
#include "exchange/FeedReader.h"
#include "support/RegionOverride.h"

#include <limits>

namespace exchange {
namespace {

using platform::Region;

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

const Region newYork{"en_US", "America/New_York"};
const Region saoPaulo{"pt_BR", "America/Sao_Paulo"}; // changed its clocks at midnight
const Region beirut{"ar_LB", "Asia/Beirut"};         // likewise
const Region havana{"es_CU", "America/Havana"};      // went back from 01:00 to midnight
const Region utcZone{"en_US", "UTC"};
const Region thai{"th_TH@calendar=buddhist", "Asia/Bangkok"};
const Region persian{"fa_IR@calendar=persian", "Asia/Tehran"};
const Region japanese{"ja_JP@calendar=japanese", "Asia/Tokyo"};

struct Row {
    const char* name;
    Region region;
    double now;
    std::int64_t dayCount;
    double limit;
};

class FeedLimitTable : public ExchangeTest, public testing::WithParamInterface<Row> {};

TEST_P(FeedLimitTable, isTheLastSecondBeforeADay) {
    region.reset();
    const support::RegionOverride here(GetParam().region);
    clock.set(GetParam().now);
    const auto limit = limitForDayCount(GetParam().dayCount);
    ASSERT_TRUE(std::holds_alternative<double>(limit));
    EXPECT_DOUBLE_EQ(std::get<double>(limit), GetParam().limit);
}

INSTANTIATE_TEST_SUITE_P(
    WithinTheMonth, FeedLimitTable,
    testing::Values(
        Row{"TodayOnly", utcZone, utc(2026, 3, 10, 15), 0, utc(2026, 3, 10, 23, 59, 59)},
        Row{"TwoDaysAhead", utcZone, utc(2026, 3, 10, 15), 2, utc(2026, 3, 12, 23, 59, 59)},
        Row{"MinusOneIsYesterday", utcZone, utc(2026, 3, 10, 15), -1, utc(2026, 3, 9, 23, 59, 59)},
        Row{"AtMidnight", utcZone, utc(2026, 3, 10), 0, utc(2026, 3, 10, 23, 59, 59)},
        Row{"AtTheDaysLastSecond", utcZone, utc(2026, 3, 10, 23, 59, 59), 0, utc(2026, 3, 10, 23, 59, 59)},
        Row{"InTheEveningWestOfGreenwich", newYork, utc(2026, 3, 11, 2), 0, utc(2026, 3, 11, 3, 59, 59)},
        Row{"OverTheLossOfAnHour", newYork, utc(2026, 3, 7, 12), 1, utc(2026, 3, 9, 3, 59, 59)}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    WrappingAround, FeedLimitTable,
    testing::Values(
        Row{"LastOfJanuary", utcZone, utc(2026, 1, 31, 15), 0, utc(2025, 12, 31, 23, 59, 59)},
        Row{"LastOfFebruary", utcZone, utc(2027, 2, 28, 15), 0, utc(2027, 1, 31, 23, 59, 59)},
        Row{"LastButOneOfALeapFebruary", utcZone, utc(2028, 2, 28, 15), 0, utc(2028, 2, 28, 23, 59, 59)},
        Row{"LastOfALeapFebruary", utcZone, utc(2028, 2, 29, 15), 0, utc(2028, 1, 31, 23, 59, 59)},
        Row{"LastOfApril", utcZone, utc(2026, 4, 30, 15), 0, utc(2026, 3, 31, 23, 59, 59)},
        Row{"LastOfDecember", utcZone, utc(2026, 12, 31, 15), 0, utc(2026, 11, 30, 23, 59, 59)},
        Row{"LastButOneAndTwoDays", utcZone, utc(2026, 1, 30, 15), 2, utc(2026, 1, 1, 23, 59, 59)},
        Row{"BackFromTheFirst", utcZone, utc(2026, 1, 1, 15), -2, utc(2026, 1, 30, 23, 59, 59)},
        Row{"MoreThanAMonth", utcZone, utc(2026, 4, 15, 15), 39, utc(2026, 4, 24, 23, 59, 59)},
        Row{"LargestCount", utcZone, utc(2026, 3, 10, 15), most - 1, utc(2026, 3, 16, 23, 59, 59)},
        Row{"SmallestCount", utcZone, utc(2026, 3, 10, 15), least, utc(2026, 3, 2, 23, 59, 59)}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    MidnightMissingOrTwice, FeedLimitTable,
    testing::Values(Row{"SaoPauloBefore", saoPaulo, utc(2018, 11, 3, 15), 0, utc(2018, 11, 4, 2, 59, 59)},
                    Row{"SaoPauloOnTheDay", saoPaulo, utc(2018, 11, 4, 15), 0, utc(2018, 11, 5, 1, 59, 59)},
                    Row{"SaoPauloWrappingOntoIt", saoPaulo, utc(2018, 11, 30, 15), 3,
                        utc(2018, 11, 4, 2, 59, 59)},
                    Row{"BeirutBefore", beirut, utc(2023, 3, 25, 12), 0, utc(2023, 3, 25, 21, 59, 59)},
                    Row{"HavanaBefore", havana, utc(2024, 11, 2, 16), 0, utc(2024, 11, 3, 3, 59, 59)},
                    Row{"HavanaOnTheDay", havana, utc(2024, 11, 3, 16), 0, utc(2024, 11, 4, 4, 59, 59)}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OtherCalendars, FeedLimitTable,
    testing::Values(
        Row{"ThaiLastOfJanuary", thai, utc(2026, 1, 31, 8), 0, utc(2025, 12, 31, 16, 59, 59)},
        Row{"ThaiWithinTheMonth", thai, utc(2026, 3, 10, 8), 2, utc(2026, 3, 12, 16, 59, 59)},
        // 20 March 2026 is 29 Esfand 1404, the month's last day, and 31 March is the 11th of Farvardin.
        Row{"PersianLastOfEsfand", persian, utc(2026, 3, 20, 8), 0, utc(2026, 2, 19, 20, 29, 59)},
        Row{"PersianOnALastOfMarch", persian, utc(2026, 3, 31, 8), 0, utc(2026, 3, 31, 20, 29, 59)},
        // 30 April 2019 is the last day of Heisei, 1 May the first of Reiwa.
        Row{"JapaneseLastOfAnEra", japanese, utc(2019, 4, 30, 3), 0, utc(2019, 3, 31, 14, 59, 59)},
        Row{"JapaneseFirstOfAnEra", japanese, utc(2019, 5, 1, 3), 0, utc(2019, 5, 1, 14, 59, 59)},
        Row{"JapaneseLastOfJanuary", japanese, utc(2026, 1, 31, 3), 0, utc(2025, 12, 31, 14, 59, 59)}),
    [](const auto& row) { return row.param.name; });

class FeedLimitTest : public ExchangeTest {};

TEST_F(FeedLimitTest, cannotBeCountedPastTheLargestInteger) {
    EXPECT_EQ(std::get<FeedFault>(limitForDayCount(most)).what, FeedFault::What::DayCountOverflow);
}

TEST_F(FeedLimitTest, isAbsentWhereTheCalendarYieldsNoDate) {
    clock.set(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(std::get<FeedFault>(limitForDayCount(0)).what, FeedFault::What::NoDate);
    clock.set(std::numeric_limits<double>::infinity());
    EXPECT_EQ(std::get<FeedFault>(limitForDayCount(0)).what, FeedFault::What::NoDate);
}

} // namespace
} // namespace exchange

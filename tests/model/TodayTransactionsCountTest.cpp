#include "model/TodayTransactionsCount.h"

#include <gtest/gtest.h>

namespace {

using Count = TodayTransactionsCount;

struct Row {
    const char* name;
    Count count;
    std::int64_t available;
    std::int64_t shown;
};

class TodayTransactionsCountTable : public testing::TestWithParam<Row> {};

TEST_P(TodayTransactionsCountTable, saysHowManyAreShown) {
    EXPECT_EQ(GetParam().count.shownOutOf(GetParam().available), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Cases, TodayTransactionsCountTable,
                         testing::Values(Row{"FewerThanTheLimit", Count::Custom(5), 3, 3},
                                         Row{"AsManyAsTheLimit", Count::Custom(5), 5, 5},
                                         Row{"MoreThanTheLimit", Count::Custom(5), 8, 5},
                                         Row{"LimitOfZero", Count::Custom(0), 8, 0},
                                         Row{"NegativeLimitYieldsItself", Count::Custom(-2), 8, -2},
                                         Row{"NoneOfNothing", Count::None(), 0, 0},
                                         Row{"NoneOfMany", Count::None(), 10000, 0},
                                         Row{"AllOfNothing", Count::All(), 0, 0},
                                         Row{"AllOfMany", Count::All(), 10000, 10000}),
                         [](const auto& row) { return row.param.name; });

TEST(TodayTransactionsCountTest, holdsTagAndValue) {
    EXPECT_EQ(Count::Custom(7).tag(), Count::Tag::Custom);
    EXPECT_EQ(Count::Custom(7).value(), 7);
    EXPECT_EQ(Count::None().tag(), Count::Tag::Valueless);
    EXPECT_EQ(Count::None().value(), 0);
    EXPECT_EQ(Count::All().tag(), Count::Tag::Valueless);
    EXPECT_EQ(Count::All().value(), 1);
    EXPECT_EQ(static_cast<int>(Count::Tag::Custom), 0);
    EXPECT_EQ(static_cast<int>(Count::Tag::Valueless), 1);
}

TEST(TodayTransactionsCountTest, tellsItsCasesApart) {
    EXPECT_TRUE(Count::Custom(0).isCustom());
    EXPECT_FALSE(Count::Custom(0).isNone());
    EXPECT_FALSE(Count::Custom(1).isAll());
    EXPECT_TRUE(Count::None().isNone());
    EXPECT_FALSE(Count::None().isAll());
    EXPECT_TRUE(Count::All().isAll());
    EXPECT_NE(Count::None(), Count::Custom(0));
}

} // namespace

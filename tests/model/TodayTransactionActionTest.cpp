#include "model/TodayTransactionAction.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Action = TodayTransactionAction;

struct Row {
    const char* name;
    Action action;
    Action::Tag tag;
    std::int64_t value;
};

class TodayTransactionActionTable : public testing::TestWithParam<Row> {};

TEST_P(TodayTransactionActionTable, holdsTagAndValue) {
    EXPECT_EQ(GetParam().action.tag(), GetParam().tag);
    EXPECT_EQ(GetParam().action.value(), GetParam().value);
}

constexpr std::int64_t mostDays = std::numeric_limits<std::int64_t>::max();

INSTANTIATE_TEST_SUITE_P(Cases, TodayTransactionActionTable,
                         testing::Values(Row{"Paid", Action::Paid(), Action::Tag::Valueless, 0},
                                         Row{"Info", Action::Info(), Action::Tag::Valueless, 1},
                                         Row{"LaterToday", Action::Later(0), Action::Tag::Later, 0},
                                         Row{"LaterTomorrow", Action::Later(1), Action::Tag::Later, 1},
                                         Row{"LaterBackwards", Action::Later(-3), Action::Tag::Later, -3},
                                         Row{"LaterMost", Action::Later(mostDays), Action::Tag::Later,
                                             mostDays},
                                         Row{"DeleteOne", Action::Delete(false), Action::Tag::Delete, 0},
                                         Row{"DeleteFuture", Action::Delete(true), Action::Tag::Delete, 1}),
                         [](const auto& row) { return row.param.name; });

TEST(TodayTransactionActionTest, numbersItsTags) {
    EXPECT_EQ(static_cast<int>(Action::Tag::Later), 0);
    EXPECT_EQ(static_cast<int>(Action::Tag::Delete), 1);
    EXPECT_EQ(static_cast<int>(Action::Tag::Valueless), 2);
}

TEST(TodayTransactionActionTest, tellsItsCasesApart) {
    EXPECT_TRUE(Action::Paid().isPaid());
    EXPECT_FALSE(Action::Info().isPaid());
    EXPECT_TRUE(Action::Info().isInfo());
    EXPECT_FALSE(Action::Delete(true).isInfo());
    EXPECT_TRUE(Action::Later(0).isLater());
    EXPECT_FALSE(Action::Later(0).isPaid());
    EXPECT_TRUE(Action::Delete(false).isDelete());
    EXPECT_FALSE(Action::Delete(false).isPaid());
}

TEST(TodayTransactionActionTest, isAPlainValue) {
    Action action = Action::Later(3);
    const Action copy = action;
    action = Action::Paid();
    EXPECT_EQ(copy, Action::Later(3));
    EXPECT_NE(copy, Action::Later(1));
    EXPECT_NE(Action::Delete(false), Action::Delete(true));
}

} // namespace

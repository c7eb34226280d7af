#include "bridge/PlansText.h"

#include "bridge/BridgeTest.h"

#include <gtest/gtest.h>

namespace bridge {

TEST(PlansText, isReadBackAsTheSamePlans) {
    Plan rent = planOf("1", {"2026-03-01", "2026-04-01"});
    rent.occurrences[1].day = dayOf("2026-03-31");
    rent.payee = "Ана \"quoted\"";
    rent.category = "Home:Rent";
    rent.account = "Giro";
    Plan open = planOf("2", {});
    open.amount.reset();
    open.direction = Direction::Transfer;
    open.isSingle = true;
    const auto plans = plansOfText(textOfPlans({rent, open}));
    ASSERT_TRUE(plans);
    ASSERT_EQ(plans->size(), 2U);
    const Plan& first = plans->front();
    EXPECT_EQ(first.key, "1");
    EXPECT_EQ(first.name, "Plan 1");
    EXPECT_EQ(first.payee, rent.payee);
    EXPECT_EQ(first.category, "Home:Rent");
    EXPECT_EQ(first.account, "Giro");
    EXPECT_EQ(first.amount, rent.amount);
    EXPECT_EQ(first.direction, Direction::Expense);
    EXPECT_FALSE(first.isSingle);
    EXPECT_EQ(first.occurrences, rent.occurrences);
    EXPECT_FALSE(plans->back().amount);
    EXPECT_EQ(plans->back().direction, Direction::Transfer);
    EXPECT_TRUE(plans->back().isSingle);
    EXPECT_TRUE(plans->back().occurrences.empty());
}

TEST(PlansText, isNothingWhereItIsNotWhole) {
    const std::string text = textOfPlans({planOf("1", {"2026-03-01"})});
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_FALSE(plansOfText(text.substr(0, length))) << length;
    for (const char* other : {"{}", "[1]", "[{}]"})
        EXPECT_FALSE(plansOfText(other)) << other;
    for (const auto& [from, to] :
         {std::pair("-870.00", "much"), std::pair("2026-03-01", "2026-03-32"),
          std::pair("\"direction\":0", "\"direction\":3"), std::pair("\"single\":false", "\"single\":0")}) {
        std::string changed = text;
        ASSERT_NE(changed.find(from), changed.npos) << from;
        EXPECT_FALSE(plansOfText(changed.replace(changed.find(from), std::string(from).size(), to))) << to;
    }
}

} // namespace bridge

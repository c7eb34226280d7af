#include "ctl/PrintBudget.h"

#include "ctl/Json.h"

#include <gtest/gtest.h>

#include <sstream>

namespace ctl {
namespace {

namespace plist = platform::plist;

// An array whose only string is named 2^depth times.
plist::Value doubled(plist::Value value, int depth) {
    for (int level = 0; level < depth; ++level)
        value = plist::Value(plist::Array{value, value});
    return value;
}

TEST(PrintBudgetTest, grantsAnyLengthOfWhatIsNotShared) {
    PrintBudget budget;
    for (int record = 0; record < 30; ++record) {
        const plist::Value value(std::string(1 << 20, 'a'));
        EXPECT_TRUE(budget.grants(value)) << record;
    }
}

TEST(PrintBudgetTest, grantsWhatFollowsAValueThatIsTooLarge) {
    const plist::Value bomb = doubled(plist::Value("text"), 100);
    const plist::Value small(std::int64_t(7));
    PrintBudget budget;
    EXPECT_TRUE(budget.grants(small));
    EXPECT_FALSE(budget.grants(bomb));
    EXPECT_FALSE(budget.grants(bomb));
    EXPECT_TRUE(budget.grants(small));
}

TEST(PrintBudgetTest, countsWhatSeveralValuesShare) {
    const plist::Value mebibytes = doubled(plist::Value("text"), 15);
    ASSERT_TRUE(isPrintable(mebibytes));
    const plist::Array records(100, mebibytes);
    PrintBudget budget;
    std::ostringstream out;
    std::size_t count = 0;
    for (const plist::Value& record : records)
        if (budget.grants(record)) {
            writeJson(out, record);
            ++count;
        }
    EXPECT_GT(count, 0u);
    EXPECT_LT(count, records.size());
    EXPECT_LT(out.str().size(), std::size_t{16} << 20);
}

TEST(PrintBudgetTest, grantsAValueByItself) {
    EXPECT_TRUE(isPrintable(doubled(plist::Value("text"), 10)));
    EXPECT_FALSE(isPrintable(doubled(plist::Value("text"), 30)));
}

} // namespace
} // namespace ctl

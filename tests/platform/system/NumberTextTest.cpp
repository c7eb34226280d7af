#include "platform/system/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace platform {
namespace {

TEST(NumberTextTest, readsATextThatIsANumber) {
    EXPECT_EQ(numberFromText<std::int64_t>("-9223372036854775808"), INT64_MIN);
    EXPECT_EQ(numberFromText<int>("007"), 7);
    EXPECT_EQ(numberFromText<double>("1773165600.5"), 1773165600.5);
    EXPECT_EQ(numberFromText<double>("-1e3"), -1000);
    EXPECT_TRUE(std::isnan(numberFromText<double>("nan").value_or(0)));
}

TEST(NumberTextTest, refusesAnyOtherText) {
    for (const char* text : {"", "-", "+1", " 1", "1 ", "1x", "0x10", "3.5", "9223372036854775808"})
        EXPECT_EQ(numberFromText<std::int64_t>(text), std::nullopt) << text;
    for (const char* text : {"", ".", "1,5", "1.5 ", "1e", "1e999"})
        EXPECT_EQ(numberFromText<double>(text), std::nullopt) << text;
}

} // namespace
} // namespace platform

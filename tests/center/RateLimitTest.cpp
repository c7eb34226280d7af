#include "center/RateLimit.h"

#include <gtest/gtest.h>

using center::RateLimit;
using namespace std::chrono_literals;

TEST(RateLimit, allowsSoManyInAnyPeriod) {
    RateLimit limit(2, 10s);
    EXPECT_TRUE(limit.take(0s));
    EXPECT_TRUE(limit.take(6s));
    EXPECT_FALSE(limit.take(9999ms));
    EXPECT_TRUE(limit.take(10s)) << "the first is out of the period";
    EXPECT_FALSE(limit.take(15s));
    EXPECT_TRUE(limit.take(16s));
}

TEST(RateLimit, doesNotCountWhatItRefuses) {
    RateLimit limit(1, 10s);
    EXPECT_TRUE(limit.take(0s));
    for (int second = 1; second < 10; ++second)
        EXPECT_FALSE(limit.take(std::chrono::seconds(second)));
    EXPECT_TRUE(limit.take(10s));
}

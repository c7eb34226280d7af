#include "platform/system/Clock.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <ctime>

using platform::Clock;
using support::ManualClock;

namespace {

double systemSeconds() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

} // namespace

TEST(ClockTest, theSystemsClockCountsFrom1970WithAFraction) {
    const double before = systemSeconds();
    const double now = Clock::current().now();
    EXPECT_LE(before, now);
    EXPECT_LE(now, systemSeconds());
}

TEST(ClockTest, aManualClockStandsWhereItWasPut) {
    ManualClock clock(1000.25);
    EXPECT_EQ(Clock::current().now(), 1000.25);
    clock.advance(0.5);
    EXPECT_EQ(Clock::current().now(), 1000.75);
    clock.set(-3);
    EXPECT_EQ(Clock::current().now(), -3);
}

TEST(ClockTest, theSystemsClockIsBackAfterAManualOne) {
    { const ManualClock clock(1); }
    EXPECT_GE(Clock::current().now(), 1e9);
}

TEST(ClockTest, theOuterManualClockIsBackAfterAnInnerOne) {
    const ManualClock outer(1);
    { const ManualClock inner(2); }
    EXPECT_EQ(Clock::current().now(), 1);
}

TEST(ClockTest, settingAClockGivesTheOneBefore) {
    const ManualClock clock(1);
    EXPECT_EQ(Clock::setCurrent(nullptr), &clock);
    EXPECT_EQ(Clock::setCurrent(&clock), nullptr);
}

#include "center/RestartPolicy.h"

#include <gtest/gtest.h>

#include <vector>

using center::RestartPolicy;
using namespace std::chrono_literals;

namespace {

using Duration = RestartPolicy::Duration;

// Starts as early as allowed, ends each run at once, and gives the moments of so many starts.
std::vector<Duration> startsInARow(RestartPolicy& policy, int count, bool afterChange = false) {
    std::vector<Duration> starts;
    Duration now{0};
    for (int i = 0; i < count; ++i) {
        policy.started(now);
        starts.push_back(now);
        policy.ended(now);
        now = afterChange ? policy.nextStartAfterChange(now) : policy.nextStart();
    }
    return starts;
}

std::size_t mostWithin(const std::vector<Duration>& starts, Duration span) {
    std::size_t most = 0;
    for (std::size_t first = 0; first < starts.size(); ++first) {
        std::size_t last = first;
        while (last < starts.size() && starts[last] - starts[first] < span)
            ++last;
        most = std::max(most, last - first);
    }
    return most;
}

} // namespace

TEST(RestartPolicy, pausesASecondAfterTheFirstEnd) {
    RestartPolicy policy;
    policy.started(10s);
    policy.ended(12s);
    EXPECT_EQ(policy.nextStart(), 13s);
}

TEST(RestartPolicy, pausesTwiceAsLongEachTime) {
    RestartPolicy policy;
    const auto starts = startsInARow(policy, 5);
    EXPECT_EQ(starts, (std::vector<Duration>{0s, 1s, 3s, 7s, 15s}));
}

TEST(RestartPolicy, pausesFiveMinutesAtMost) {
    RestartPolicy policy;
    const auto starts = startsInARow(policy, 15);
    EXPECT_EQ(starts[14] - starts[13], 5min);
    EXPECT_EQ(starts[10] - starts[9], 5min);
}

TEST(RestartPolicy, beginsAnewAfterARunOfAMinute) {
    RestartPolicy policy;
    startsInARow(policy, 3);
    policy.started(1h);
    policy.ended(1h + 1min);
    EXPECT_EQ(policy.nextStart(), 1h + 1min + 1s);
    policy.started(2h);
    policy.ended(2h + 59s);
    EXPECT_EQ(policy.nextStart(), 2h + 59s + 2s);
}

TEST(RestartPolicy, allowsFiveStartsAMinuteAndTwentyAnHourHoweverOftenSomethingChanges) {
    RestartPolicy policy;
    const auto starts = startsInARow(policy, 60, true);
    EXPECT_EQ(mostWithin(starts, 1min), 5U);
    EXPECT_EQ(mostWithin(starts, 1h), 20U);
    EXPECT_EQ(starts[4], 0s) << "a change needs no pause";
}

TEST(RestartPolicy, staysWithinTheLimitsByItself) {
    RestartPolicy policy;
    const auto starts = startsInARow(policy, 60);
    EXPECT_LE(mostWithin(starts, 1min), 5U);
    EXPECT_LE(mostWithin(starts, 1h), 20U);
}

TEST(RestartPolicy, countsTheStartsThatTheUserAsksFor) {
    RestartPolicy policy;
    for (int i = 0; i < 30; ++i) {
        policy.started(i * 10s);
        policy.ended(i * 10s);
    }
    EXPECT_EQ(policy.nextStartAfterChange(290s), 100s + 1h);
}

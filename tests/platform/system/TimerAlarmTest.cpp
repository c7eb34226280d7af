#include "platform/system/TimerAlarm.h"

#include "platform/system/Clock.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <cerrno>
#include <limits>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

using platform::Clock;
using platform::TimerAlarm;

namespace {

bool clockWasSet = false; // since the timer was last read

} // namespace

// In place of the C library's function. The kernel arms the timer, but says so of a clock that was set.
int timerfd_settime(int timer, int flags, const itimerspec* time, itimerspec* before) noexcept {
    const auto result = static_cast<int>(syscall(SYS_timerfd_settime, timer, flags, time, before));
    if (!std::exchange(clockWasSet, false))
        return result;
    errno = ECANCELED;
    return -1;
}

namespace {

constexpr double never = std::numeric_limits<double>::infinity();

class TimerAlarmTest : public testing::Test {
protected:
    TimerAlarmTest() {
        alarm.setRung([this] { ++rung; });
    }

    void waitForRing() {
        const int before = rung;
        while (rung == before)
            application.processEvents(QEventLoop::WaitForMoreEvents);
    }

    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    TimerAlarm alarm;
    int rung = 0;
};

} // namespace

TEST_F(TimerAlarmTest, ringsOnceTheClockIsPastTheMoment) {
    for (const double delay : {0.0, 1e-7, 0.003, 0.02}) {
        const double moment = Clock::current().now() + delay;
        alarm.setMoment(moment);
        waitForRing();
        EXPECT_GT(Clock::current().now(), moment);
    }
    EXPECT_EQ(rung, 4);
}

TEST_F(TimerAlarmTest, ringsOnceForAMomentThatHasPassed) {
    for (const double moment : {Clock::current().now() - 1, 0.0, -1e9, -never}) {
        const int before = rung;
        alarm.setMoment(moment);
        EXPECT_EQ(rung, before) << "within the call";
        waitForRing();
        application.processEvents();
        EXPECT_EQ(rung, before + 1);
    }
}

TEST_F(TimerAlarmTest, staysSilentBeforeTheMoment) {
    const double now = Clock::current().now();
    for (const double moment : {now + 1e6, 1e11, 1e300, never, std::numeric_limits<double>::quiet_NaN()}) {
        alarm.setMoment(now - 1);
        alarm.setMoment(moment); // instead of the other
        application.processEvents();
        EXPECT_EQ(rung, 0) << moment;
    }
}

TEST_F(TimerAlarmTest, ringsForAClockThatWasSetBeforeTheMomentWasReplaced) {
    alarm.setMoment(never);
    clockWasSet = true;
    alarm.setMoment(never);
    EXPECT_EQ(rung, 0) << "within the call";
    waitForRing();
    EXPECT_EQ(rung, 1);
}

#include "platform/system/TimerAlarm.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <sys/timerfd.h>
#include <unistd.h>

namespace platform {

namespace {

// A moment is a double, whose step in our days is a quarter of a microsecond: that much later the clock, read
// as a double, is past it.
constexpr std::int64_t pastNanoseconds = 1000;
constexpr double latest = 8.64e12; // seconds; the kernel cuts it to the end of its own range

// Zeros would disarm the timer, so a moment before 1970 becomes one right after its start.
timespec timeAfter(double moment) {
    const double seconds = std::isnan(moment) ? latest : std::clamp(std::floor(moment), 0.0, latest);
    const double fraction = std::isnan(moment) ? 0 : std::clamp(moment - seconds, 0.0, 1.0);
    const auto nanoseconds = static_cast<std::int64_t>(fraction * 1e9) + pastNanoseconds;
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds) + nanoseconds / 1'000'000'000;
    time.tv_nsec = nanoseconds % 1'000'000'000;
    return time;
}

} // namespace

TimerAlarm::TimerAlarm()
    : timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (timer_ < 0)
        return;
    notifier_ = std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { readTimer(); });
}

TimerAlarm::~TimerAlarm() {
    notifier_.reset();
    if (timer_ >= 0)
        close(timer_);
}

// A clock that was set since the timer was last read makes the first call fail, and no read tells of it after
// that. The timer then rings at once.
void TimerAlarm::setMoment(double moment) {
    if (!arm(moment) && errno == ECANCELED)
        arm(0);
}

bool TimerAlarm::arm(double moment) const {
    itimerspec time{};
    time.it_value = timeAfter(moment);
    return timerfd_settime(timer_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &time, nullptr) == 0;
}

// The read tells of a cancelled timer by ECANCELED. Nothing is there to be read where the moment was replaced
// after the event loop had been woken.
void TimerAlarm::readTimer() {
    std::uint64_t times = 0;
    const ssize_t count = read(timer_, &times, sizeof times);
    if (count > 0 || (count < 0 && errno == ECANCELED))
        ring();
}

} // namespace platform

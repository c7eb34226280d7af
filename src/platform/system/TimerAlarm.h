#pragma once

#include "platform/system/WallClockAlarm.h"

#include <QSocketNotifier>

#include <memory>

namespace platform {

// The alarm on a timer of the kernel that follows the real-time clock. It sleeps until then; setting the
// clock cancels it, and so does waking from sleep, in which the clock goes on without the system. Without
// such a timer it stays silent.
class TimerAlarm final : public WallClockAlarm {
public:
    TimerAlarm();
    ~TimerAlarm() override;
    TimerAlarm(const TimerAlarm&) = delete;
    TimerAlarm& operator=(const TimerAlarm&) = delete;

    void setMoment(double moment) override;

private:
    bool arm(double moment) const;
    void readTimer();

    int timer_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace platform

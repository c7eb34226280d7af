#pragma once

#include <functional>
#include <optional>
#include <utility>

namespace platform {

// Tells when the system's clock has passed a moment, and when it was set. Main thread only.
class WallClockAlarm {
public:
    virtual ~WallClockAlarm() = default;

    // Replaces the moment (seconds since 1970-01-01 00:00 UTC) after which the alarm rings once. A moment
    // that has passed rings at once, but never within this call; one that is NaN never rings. Until the first
    // call the alarm is silent.
    virtual void setMoment(double moment) = 0;

    // The handler is called when the clock has passed the moment, and whenever the clock was set or the
    // system has slept; each time the moment has to be set anew.
    void setRung(std::function<void()> handler) { rung_ = std::move(handler); }

protected:
    void ring() const {
        if (rung_)
            rung_();
    }

private:
    std::function<void()> rung_;
};

} // namespace platform

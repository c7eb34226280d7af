#pragma once

#include "platform/system/Clock.h"

namespace support {

// A clock whose time the test sets. It replaces the clock of the process for as long as it lives.
class ManualClock final : public platform::Clock {
public:
    // Seconds since 1970-01-01 00:00 UTC.
    explicit ManualClock(double now)
        : now_(now)
        , previous_(setCurrent(this)) {}
    ~ManualClock() override { setCurrent(previous_); }
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    [[nodiscard]] double now() const override { return now_; }
    void set(double now) { now_ = now; }
    void advance(double seconds) { now_ += seconds; }

private:
    double now_;
    const Clock* previous_;
};

} // namespace support

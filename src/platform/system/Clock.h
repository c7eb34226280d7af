#pragma once

namespace platform {

// The source of the current time. Tests replace the clock of the process.
class Clock {
public:
    virtual ~Clock() = default;

    // Seconds since 1970-01-01 00:00 UTC, with a fraction.
    [[nodiscard]] virtual double now() const = 0;

    // The clock of the process: the system clock, unless another one was set.
    [[nodiscard]] static const Clock& current();

    // Replaces the clock of the process by one that outlives its use; nullptr restores the system clock.
    // Returns the clock that was set before, or nullptr.
    static const Clock* setCurrent(const Clock* clock);
};

// A clock that stands where it was put, in force for as long as it lives; then the one before it is again.
class ManualClock final : public Clock {
public:
    explicit ManualClock(double now);
    ~ManualClock() override;
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    [[nodiscard]] double now() const override { return now_; }
    void set(double now) { now_ = now; }
    void advance(double seconds) { now_ += seconds; }

private:
    double now_;
    const Clock* previous_;
};

} // namespace platform

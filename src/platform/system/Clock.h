#pragma once

namespace platform {

// The current moment. One clock serves the process; tests put their own in its place.
class Clock {
public:
    virtual ~Clock() = default;

    // Seconds since 1970-01-01 00:00 UTC, with the fraction that the source has.
    [[nodiscard]] virtual double now() const = 0;

    // The clock in force: the system's, unless another was set.
    [[nodiscard]] static const Clock& current();

    // Puts a clock in force, which must outlive its use; nullptr brings the system's back. Gives the one that
    // was set before, or nullptr.
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

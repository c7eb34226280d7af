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

} // namespace platform

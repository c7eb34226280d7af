#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

// Work deferred on the main thread, and the one source of time for animations. Nothing cancels deferred work.
// Tests put a ManualMainQueue in its place, where time stands until it is moved.
class MainQueue {
public:
    using Duration = std::chrono::nanoseconds;
    using Work = std::function<void()>;
    // Called with the share of the duration that has passed, 0 to 1; the last call has exactly 1.
    using Tick = std::function<void(double progress)>;

    // A running animation. Destroying the handle stops the ticks but not the completion, which belongs to the
    // group.
    class Ticking {
    public:
        virtual ~Ticking() = default;
    };

    virtual ~MainQueue() = default;

    // Runs work once, a duration from now (a precise timer: never early).
    virtual void after(Duration delay, Work work) = 0;

    // Calls tick at the screen's pace for a duration, the last time at its end.
    [[nodiscard]] virtual std::unique_ptr<Ticking> animate(Duration duration, Tick tick) = 0;

    // Whether no deferred work is pending. A program ends only then.
    [[nodiscard]] virtual bool isIdle() const = 0;

    [[nodiscard]] static MainQueue& current();
    static void setCurrent(MainQueue* queue); // nullptr brings the event loop's back
};

} // namespace platform

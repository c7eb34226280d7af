#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

// Work deferred on the main thread, and the one source of time for animations. Nothing cancels deferred work.
// Tests put a queue of their own in its place.
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

    // Runs work once, a duration from now (a precise timer: never early), never within this call. Work that
    // is due at the same time runs in the order in which it was deferred, after the ticks of that time: an
    // animation and work of the same duration, started in this order, end in this order. Work may defer more.
    virtual void after(Duration delay, Work work) = 0;

    // Calls tick at the screen's pace for a duration, the last time at its end, never within this call. A
    // tick may destroy any handle, its own too.
    [[nodiscard]] virtual std::unique_ptr<Ticking> animate(Duration duration, Tick tick) = 0;

    // Whether no deferred work is pending (work that is running is not). A program ends only then.
    [[nodiscard]] virtual bool isIdle() const = 0;

    // The queue in force: the event loop's, unless another was set.
    [[nodiscard]] static MainQueue& current();

    // Puts a queue in force, which must outlive its use; nullptr brings the event loop's back. Gives the one
    // that was set before, or nullptr.
    static MainQueue* setCurrent(MainQueue* queue);
};

} // namespace platform

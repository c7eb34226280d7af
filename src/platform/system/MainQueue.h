#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

// Runs deferred work on the main thread and is the only source of time for animations. Deferred work cannot
// be cancelled. Tests replace the queue by one of their own.
class MainQueue {
public:
    using Duration = std::chrono::nanoseconds;
    using Work = std::function<void()>;
    // Called with the fraction of the duration that has passed, from 0 to 1. The last call passes exactly 1.
    using Tick = std::function<void(double progress)>;

    // The handle of a running animation. Destroying it stops the ticks.
    class Ticking {
    public:
        virtual ~Ticking() = default;
    };

    virtual ~MainQueue() = default;

    // Runs work once after a delay, never early and never within this call. Work that is due at the same time
    // runs in the order in which it was deferred, and after the ticks of that time: the last tick of an
    // animation precedes work that was deferred for the animation's duration. Work may defer more work.
    virtual void after(Duration delay, Work work) = 0;

    // Calls tick about 60 times a second for a duration and a last time at its end, never within this call. A
    // tick may destroy any handle, including its own.
    [[nodiscard]] virtual std::unique_ptr<Ticking> animate(Duration duration, Tick tick) = 0;

    // Whether animations that start from now on show no motion, as users ask of their desktop: each of them
    // ticks once, with 1, where it would have ticked first. Deferred work keeps its time.
    void setReducedMotion(bool reduced) { reducedMotion_ = reduced; }
    [[nodiscard]] bool reducedMotion() const { return reducedMotion_; }

    // Whether no deferred work is pending. Work that is running and animations do not count.
    [[nodiscard]] virtual bool isIdle() const = 0;

    // Runs work once, right after the deferred work with which the queue next becomes idle. On a queue that
    // is idle now, it runs after work that is deferred later. It may defer work and ask for the next time.
    virtual void whenNextIdle(Work work) = 0;

    // Runs all deferred work now, without the event loop, but waits for each piece until it is due. For a program
    // that has to end at once.
    virtual void finish() = 0;

    // The queue of the program: that of the event loop, unless another one was set.
    [[nodiscard]] static MainQueue& current();

    // Replaces the queue of the program by one that outlives its use; nullptr restores the event loop's
    // queue. Returns the queue that was set before, or nullptr.
    static MainQueue* setCurrent(MainQueue* queue);

protected:
    // The time for which an animation ticks.
    [[nodiscard]] Duration timeOfTicks(Duration duration) const {
        return reducedMotion_ ? Duration::zero() : duration;
    }

private:
    bool reducedMotion_ = false;
};

} // namespace platform

#pragma once

#include "platform/system/DeferredWork.h"
#include "platform/system/MainQueue.h"
#include "platform/system/RunningAnimations.h"

#include <cstddef>

namespace platform {

// A main queue whose time moves only when it is told to; in force for as long as it lives, then the one
// before it is again. Work runs in the order of its due times (equal ones in the order of their making),
// ticks come before work that is due at the same time.
class ManualMainQueue final : public MainQueue {
public:
    ManualMainQueue();
    ~ManualMainQueue() override;
    ManualMainQueue(const ManualMainQueue&) = delete;
    ManualMainQueue& operator=(const ManualMainQueue&) = delete;

    void after(Duration delay, Work work) override;
    [[nodiscard]] std::unique_ptr<Ticking> animate(Duration duration, Tick tick) override;
    [[nodiscard]] bool isIdle() const override { return work_.isEmpty(); }

    // Moves time on, running all that falls due on the way, also what that work itself defers. Animations
    // tick whenever work falls due, and at the end.
    void advance(Duration duration);
    [[nodiscard]] std::size_t pendingCount() const { return work_.count(); }

private:
    Duration now_{0};
    DeferredWork work_;
    RunningAnimations animations_;
    MainQueue* previous_;
};

} // namespace platform

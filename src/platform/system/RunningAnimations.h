#pragma once

#include "platform/system/MainQueue.h"

#include <memory>
#include <vector>

namespace platform {

// The running animations of one main queue. A tick may start animations and destroy any handle, including its
// own. Handles may outlive this object.
class RunningAnimations final {
public:
    using Duration = MainQueue::Duration;

    RunningAnimations() = default;
    ~RunningAnimations();
    RunningAnimations(const RunningAnimations&) = delete;
    RunningAnimations& operator=(const RunningAnimations&) = delete;

    // Starts an animation. One whose duration is zero or less ends at the first tick.
    [[nodiscard]] std::unique_ptr<MainQueue::Ticking> start(Duration now, Duration duration,
                                                            MainQueue::Tick tick);
    void tickAll(Duration now);
    [[nodiscard]] bool isEmpty() const { return running_.empty(); }

private:
    class Animation;

    std::vector<Animation*> running_; // in the order of their start
};

} // namespace platform

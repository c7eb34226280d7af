#pragma once

#include "platform/system/MainQueue.h"

#include <memory>
#include <vector>

namespace platform {

// The animations that run on one main queue. Ticks may start animations and destroy handles, their own too;
// handles may outlive this.
class RunningAnimations final {
public:
    using Duration = MainQueue::Duration;

    RunningAnimations() = default;
    ~RunningAnimations();
    RunningAnimations(const RunningAnimations&) = delete;
    RunningAnimations& operator=(const RunningAnimations&) = delete;

    // A duration of zero or less ends at the first tick.
    [[nodiscard]] std::unique_ptr<MainQueue::Ticking> start(Duration now, Duration duration,
                                                            MainQueue::Tick tick);
    void tickAll(Duration now);
    [[nodiscard]] bool isEmpty() const { return running_.empty(); }

private:
    class Animation;

    std::vector<Animation*> running_; // in the order of their start, without those that have ended
};

} // namespace platform

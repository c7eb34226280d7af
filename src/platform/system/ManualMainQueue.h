#pragma once

#include "platform/system/MainQueue.h"

#include <cstdint>
#include <vector>

namespace platform {

// A main queue whose time moves only when it is told to; in force for as long as it lives. Work runs in the
// order of its due times (equal ones in the order of their making), ticks come before work that is due at the
// same time.
class ManualMainQueue final : public MainQueue {
public:
    ManualMainQueue();
    ~ManualMainQueue() override;
    ManualMainQueue(const ManualMainQueue&) = delete;
    ManualMainQueue& operator=(const ManualMainQueue&) = delete;

    void after(Duration delay, Work work) override;
    [[nodiscard]] std::unique_ptr<Ticking> animate(Duration duration, Tick tick) override;
    [[nodiscard]] bool isIdle() const override { return pending_.empty(); }

    // Moves time on, running all that falls due on the way, also what that work itself defers.
    void advance(Duration duration);
    [[nodiscard]] std::size_t pendingCount() const { return pending_.size(); }

private:
    class Animation;
    struct Pending {
        Duration due;
        std::uint64_t order;
        Work work;
    };

    void tickAll();

    Duration now_{0};
    std::uint64_t nextOrder_ = 0;
    std::vector<Pending> pending_;
    std::vector<Animation*> animations_;
};

} // namespace platform

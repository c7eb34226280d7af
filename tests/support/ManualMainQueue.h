#pragma once

#include "platform/system/DeferredWork.h"
#include "platform/system/MainQueue.h"
#include "platform/system/RunningAnimations.h"

#include <cstddef>
#include <utility>

namespace support {

// A main queue whose time stands still until the test advances it. It replaces the current queue for as long
// as it lives.
class ManualMainQueue final : public platform::MainQueue {
public:
    ManualMainQueue();
    ~ManualMainQueue() override;
    ManualMainQueue(const ManualMainQueue&) = delete;
    ManualMainQueue& operator=(const ManualMainQueue&) = delete;

    void after(Duration delay, Work work) override;
    [[nodiscard]] std::unique_ptr<Ticking> animate(Duration duration, Tick tick) override;
    [[nodiscard]] bool isIdle() const override { return work_.isEmpty(); }
    void whenNextIdle(Work work) override { work_.addForIdle(std::move(work)); }
    void finish() override;

    // Advances the time and runs all work that falls due in between, including work that such work defers.
    // Animations tick whenever work falls due, and at the end of the span.
    void advance(Duration duration);
    [[nodiscard]] std::size_t pendingCount() const { return work_.count(); }

private:
    Duration now_{0};
    platform::DeferredWork work_;
    platform::RunningAnimations animations_;
    MainQueue* previous_;
};

} // namespace support

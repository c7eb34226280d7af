#pragma once

#include "platform/system/DeferredWork.h"
#include "platform/system/MainQueue.h"
#include "platform/system/RunningAnimations.h"

#include <QPointer>

class QTimer;

namespace platform {

// The main queue on Qt's event loop. One precise timer runs while work is deferred, Qt's animation clock
// while an animation does; otherwise nothing ticks. Needs a QCoreApplication; what is pending when that one
// ends waits for the next.
class EventLoopMainQueue final : public MainQueue {
public:
    EventLoopMainQueue() = default;
    ~EventLoopMainQueue() override;
    EventLoopMainQueue(const EventLoopMainQueue&) = delete;
    EventLoopMainQueue& operator=(const EventLoopMainQueue&) = delete;

    void after(Duration delay, Work work) override;
    [[nodiscard]] std::unique_ptr<Ticking> animate(Duration duration, Tick tick) override;
    [[nodiscard]] bool isIdle() const override { return work_.isEmpty(); }

    // Whether a timer of this queue runs.
    [[nodiscard]] bool isTicking() const;

private:
    void arm();
    void runDue();
    void tickFrame();

    DeferredWork work_;
    RunningAnimations animations_;
    QPointer<QTimer> workTimer_;
    QPointer<QTimer> frameTimer_;
};

} // namespace platform

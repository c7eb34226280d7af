#pragma once

#include "platform/system/DeferredWork.h"
#include "platform/system/MainQueue.h"
#include "platform/system/RunningAnimations.h"

#include <QPointer>

#include <utility>

class QTimer;

namespace platform {

// The main queue on Qt's event loop. One timer runs while work is deferred and another one while an animation
// runs; otherwise the process sleeps. It needs a QCoreApplication. Work that is pending when the application
// ends stays pending.
class EventLoopMainQueue final : public MainQueue {
public:
    EventLoopMainQueue() = default;
    ~EventLoopMainQueue() override;
    EventLoopMainQueue(const EventLoopMainQueue&) = delete;
    EventLoopMainQueue& operator=(const EventLoopMainQueue&) = delete;

    void after(Duration delay, Work work) override;
    [[nodiscard]] std::unique_ptr<Ticking> animate(Duration duration, Tick tick) override;
    [[nodiscard]] bool isIdle() const override { return work_.isEmpty(); }
    void whenNextIdle(Work work) override { work_.addForIdle(std::move(work)); }
    void finish() override;

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

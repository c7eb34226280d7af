#include "platform/system/EventLoopMainQueue.h"

#include <QAbstractAnimation>
#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <limits>
#include <utility>

namespace platform {

namespace {

MainQueue::Duration now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace

// An animation without an end that hands on the pace of Qt's animation clock; the queue itself knows the
// time.
class EventLoopMainQueue::Pulse final : public QAbstractAnimation {
public:
    Pulse(EventLoopMainQueue* queue, QObject* parent)
        : QAbstractAnimation(parent)
        , queue_(queue) {}

    int duration() const override { return -1; }

    void run() {
        if (state() == Running)
            return;
        isStarting_ = true; // start() ticks at once
        start();
        isStarting_ = false;
    }

protected:
    void updateCurrentTime(int) override {
        if (!isStarting_)
            queue_->pulse();
    }

private:
    EventLoopMainQueue* queue_;
    bool isStarting_ = false;
};

EventLoopMainQueue::~EventLoopMainQueue() {
    delete timer_.data();
    delete pulse_.data();
}

void EventLoopMainQueue::after(Duration delay, Work work) {
    work_.add(now(), delay, std::move(work));
    arm();
}

std::unique_ptr<MainQueue::Ticking> EventLoopMainQueue::animate(Duration duration, Tick tick) {
    auto animation = animations_.start(now(), duration, std::move(tick));
    if (!pulse_)
        pulse_ = new Pulse(this, QCoreApplication::instance());
    pulse_->run();
    return animation;
}

bool EventLoopMainQueue::isTicking() const {
    return (timer_ && timer_->isActive()) || (pulse_ && pulse_->state() == QAbstractAnimation::Running);
}

void EventLoopMainQueue::arm() {
    if (work_.isEmpty())
        return;
    if (!timer_) {
        timer_ = new QTimer(QCoreApplication::instance());
        timer_->setTimerType(Qt::PreciseTimer);
        timer_->setSingleShot(true);
        QObject::connect(timer_, &QTimer::timeout, timer_, [this] { runDue(); });
    }
    constexpr auto longest = std::chrono::milliseconds(std::numeric_limits<int>::max());
    const Duration wait = std::max(work_.firstDue() - now(), Duration::zero());
    timer_->start(std::min(std::chrono::ceil<std::chrono::milliseconds>(wait), longest));
}

// One piece of work at a time, the timer set for the next before it runs: work that runs an event loop of its
// own, or ends the application, finds the queue in order.
void EventLoopMainQueue::runDue() {
    const Duration time = now();
    if (work_.isEmpty() || work_.firstDue() > time) {
        arm();
        return;
    }
    const Work work = work_.takeFirst();
    arm();
    animations_.tickAll(time);
    if (work)
        work();
}

void EventLoopMainQueue::pulse() {
    animations_.tickAll(now());
    if (animations_.isEmpty() && pulse_)
        pulse_->stop();
}

} // namespace platform

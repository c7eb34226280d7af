#include "platform/system/EventLoopMainQueue.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <limits>
#include <thread>
#include <utility>

namespace platform {

namespace {

constexpr auto frame = std::chrono::milliseconds(16);

MainQueue::Duration now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

// The application owns the timer and deletes it at its end.
QTimer* makeTimer() {
    auto* timer = new QTimer(QCoreApplication::instance());
    timer->setTimerType(Qt::PreciseTimer);
    return timer;
}

} // namespace

EventLoopMainQueue::~EventLoopMainQueue() {
    delete workTimer_.data();
    delete frameTimer_.data();
}

void EventLoopMainQueue::after(Duration delay, Work work) {
    work_.add(now(), delay, std::move(work));
    arm();
}

std::unique_ptr<MainQueue::Ticking> EventLoopMainQueue::animate(Duration duration, Tick tick) {
    auto animation = animations_.start(now(), timeOfTicks(duration), std::move(tick));
    if (!frameTimer_) {
        frameTimer_ = makeTimer();
        frameTimer_->setInterval(frame);
        QObject::connect(frameTimer_, &QTimer::timeout, frameTimer_, [this] { tickFrame(); });
    }
    if (!frameTimer_->isActive())
        frameTimer_->start();
    return animation;
}

void EventLoopMainQueue::arm() {
    if (work_.isEmpty())
        return;
    if (!workTimer_) {
        workTimer_ = makeTimer();
        workTimer_->setSingleShot(true);
        QObject::connect(workTimer_, &QTimer::timeout, workTimer_, [this] { runDue(); });
    }
    constexpr auto longest = std::chrono::milliseconds(std::numeric_limits<int>::max());
    const Duration wait = std::max(work_.firstDue() - now(), Duration::zero());
    workTimer_->start(std::min(std::chrono::ceil<std::chrono::milliseconds>(wait), longest));
}

// Runs one piece of work and starts the timer for the next one beforehand, so that work which runs an event
// loop of its own does not delay the rest.
void EventLoopMainQueue::runDue() {
    const Duration time = now();
    if (work_.isEmpty() || work_.firstDue() > time) {
        arm();
        return;
    }
    Work work = work_.takeFirst();
    arm();
    animations_.tickAll(time);
    work_.run(std::move(work));
}

void EventLoopMainQueue::finish() {
    while (!work_.isEmpty()) {
        std::this_thread::sleep_until(std::chrono::steady_clock::time_point(work_.firstDue()));
        runDue();
    }
}

void EventLoopMainQueue::tickFrame() {
    animations_.tickAll(now());
    if (animations_.isEmpty() && frameTimer_)
        frameTimer_->stop();
}

} // namespace platform

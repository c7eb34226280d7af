#include "support/ManualMainQueue.h"

#include <utility>

namespace support {

ManualMainQueue::ManualMainQueue()
    : previous_(setCurrent(this)) {}

ManualMainQueue::~ManualMainQueue() {
    setCurrent(previous_);
}

void ManualMainQueue::after(Duration delay, Work work) {
    work_.add(now_, delay, std::move(work));
}

std::unique_ptr<platform::MainQueue::Ticking> ManualMainQueue::animate(Duration duration, Tick tick) {
    return animations_.start(now_, timeOfTicks(duration), std::move(tick));
}

void ManualMainQueue::advance(Duration duration) {
    const Duration end = now_ + duration;
    while (!work_.isEmpty() && work_.firstDue() <= end) {
        now_ = work_.firstDue();
        animations_.tickAll(now_);
        // A tick may have deferred work, but none that is due before what was first.
        work_.run(work_.takeFirst());
    }
    now_ = end;
    animations_.tickAll(now_);
}

void ManualMainQueue::finish() {
    while (!work_.isEmpty())
        advance(work_.firstDue() - now_);
}

} // namespace support

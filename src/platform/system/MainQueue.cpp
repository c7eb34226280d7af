#include "platform/system/MainQueue.h"

#include "platform/system/EventLoopMainQueue.h"

#include <utility>

namespace platform {

namespace {

MainQueue* chosenQueue = nullptr;

} // namespace

MainQueue& MainQueue::current() {
    if (chosenQueue)
        return *chosenQueue;
    // Never destroyed: work and animations may end after the statics do.
    static EventLoopMainQueue* const queue = new EventLoopMainQueue;
    return *queue;
}

MainQueue* MainQueue::setCurrent(MainQueue* queue) {
    return std::exchange(chosenQueue, queue);
}

} // namespace platform

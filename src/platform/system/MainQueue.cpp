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
    // The queue is never destroyed, because handles of animations may outlive all static objects.
    static EventLoopMainQueue* const queue = new EventLoopMainQueue;
    return *queue;
}

MainQueue* MainQueue::setCurrent(MainQueue* queue) {
    return std::exchange(chosenQueue, queue);
}

} // namespace platform

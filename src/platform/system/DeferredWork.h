#pragma once

#include "platform/system/MainQueue.h"

#include <map>
#include <utility>

namespace platform {

// Work that waits for its time, in the order of due times, equal ones in the order of their making.
class DeferredWork final {
public:
    using Duration = MainQueue::Duration;

    // A negative delay counts as none; one beyond the end of time waits for ever.
    void add(Duration now, Duration delay, MainQueue::Work work) {
        const Duration wait = std::max(delay, Duration::zero());
        const Duration due = wait < Duration::max() - now ? now + wait : Duration::max();
        waiting_.emplace(due, std::move(work));
    }

    [[nodiscard]] bool isEmpty() const { return waiting_.empty(); }
    [[nodiscard]] std::size_t count() const { return waiting_.size(); }
    // When the first is due; only where there is one.
    [[nodiscard]] Duration firstDue() const { return waiting_.begin()->first; }
    [[nodiscard]] MainQueue::Work takeFirst() {
        auto node = waiting_.extract(waiting_.begin());
        return std::move(node.mapped());
    }

private:
    std::multimap<Duration, MainQueue::Work> waiting_;
};

} // namespace platform

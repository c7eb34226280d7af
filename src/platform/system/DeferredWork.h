#pragma once

#include "platform/system/MainQueue.h"

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace platform {

// The deferred work of a main queue, sorted by due time. Work that is due at the same time keeps the order in
// which it was added. Times are durations since a moment that the queue chooses.
class DeferredWork final {
public:
    using Duration = MainQueue::Duration;

    // Adds work that is due a delay after now. A negative delay counts as zero; the work is never due when
    // its due time exceeds the largest duration.
    void add(Duration now, Duration delay, MainQueue::Work work);
    // Adds work for the next time that run() leaves no deferred work.
    void addForIdle(MainQueue::Work work) { forIdle_.push_back(std::move(work)); }

    [[nodiscard]] bool isEmpty() const { return waiting_.empty(); }
    [[nodiscard]] std::size_t count() const { return waiting_.size(); }

    // When the first work is due. Undefined without work, as is takeFirst.
    [[nodiscard]] Duration firstDue() const { return waiting_.begin()->first; }
    [[nodiscard]] MainQueue::Work takeFirst();

    // Runs and destroys work that takeFirst returned. Runs the work for the idle queue afterwards if nothing
    // else is deferred. Work without a function is allowed.
    void run(MainQueue::Work work);

private:
    std::multimap<Duration, MainQueue::Work> waiting_;
    std::vector<MainQueue::Work> forIdle_;
};

} // namespace platform

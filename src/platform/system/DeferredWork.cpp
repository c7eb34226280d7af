#include "platform/system/DeferredWork.h"

#include <algorithm>
#include <utility>

namespace platform {

void DeferredWork::add(Duration now, Duration delay, MainQueue::Work work) {
    const Duration wait = std::max(delay, Duration::zero());
    const Duration due = wait < Duration::max() - now ? now + wait : Duration::max();
    waiting_.emplace(due, std::move(work));
}

MainQueue::Work DeferredWork::takeFirst() {
    auto node = waiting_.extract(waiting_.begin());
    return std::move(node.mapped());
}

void DeferredWork::run(MainQueue::Work work) {
    if (work)
        work();
    work = nullptr;
    if (!waiting_.empty())
        return;
    for (const MainQueue::Work& notice : std::exchange(forIdle_, {}))
        if (notice)
            notice();
}

} // namespace platform

#include "center/RestartPolicy.h"

#include <algorithm>

namespace center {

using namespace std::chrono_literals;

namespace {

constexpr auto longestPause = 5min;
constexpr auto longRun = 1min;
constexpr int mostPauses = 9; // 256 s, the last that is shorter than the longest

struct Limit {
    std::size_t starts;
    RestartPolicy::Duration within;
};
constexpr Limit limits[] = {{5, 1min}, {20, 1h}};
constexpr std::size_t keptStarts = 20;

} // namespace

void RestartPolicy::started(Duration now) {
    starts_.push_back(now);
    if (starts_.size() > keptStarts)
        starts_.pop_front();
}

void RestartPolicy::ended(Duration now) {
    lastEnd_ = now;
    const bool ranLong = !starts_.empty() && now - starts_.back() >= longRun;
    quickEnds_ = ranLong ? 1 : std::min(quickEnds_ + 1, mostPauses + 1);
}

RestartPolicy::Duration RestartPolicy::nextStart() const {
    Duration pause = 1s;
    for (int end = 1; end < quickEnds_; ++end)
        pause *= 2;
    return allowedFrom(lastEnd_ + std::min<Duration>(pause, longestPause));
}

RestartPolicy::Duration RestartPolicy::nextStartAfterChange(Duration now) const {
    return allowedFrom(now);
}

RestartPolicy::Duration RestartPolicy::allowedFrom(Duration moment) const {
    for (const auto& [starts, within] : limits)
        if (starts_.size() >= starts)
            moment = std::max(moment, starts_[starts_.size() - starts] + within);
    return moment;
}

} // namespace center

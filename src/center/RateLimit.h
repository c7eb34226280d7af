#pragma once

#include <chrono>
#include <cstddef>
#include <deque>

namespace center {

// Allows something at most so many times in any period of a length. Moments are those of a steady clock.
class RateLimit final {
public:
    using Duration = std::chrono::nanoseconds;

    RateLimit(std::size_t most, Duration period)
        : most_(most)
        , period_(period) {}

    // Whether it is allowed now; if so, it counts.
    [[nodiscard]] bool take(Duration now) {
        while (!taken_.empty() && now - taken_.front() >= period_)
            taken_.pop_front();
        if (taken_.size() == most_)
            return false;
        taken_.push_back(now);
        return true;
    }

private:
    std::size_t most_;
    Duration period_;
    std::deque<Duration> taken_;
};

} // namespace center

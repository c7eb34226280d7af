#include "platform/system/RunningAnimations.h"

#include <algorithm>
#include <utility>

namespace platform {

class RunningAnimations::Animation final : public MainQueue::Ticking {
public:
    Animation(RunningAnimations* owner, Duration start, Duration duration, MainQueue::Tick tick)
        : owner_(owner)
        , start_(start)
        , duration_(duration)
        , tick_(std::make_shared<MainQueue::Tick>(std::move(tick))) {
        owner_->running_.push_back(this);
    }

    ~Animation() override { leave(); }

    void tick(Duration now) {
        const bool ends = now - start_ >= duration_;
        const double progress =
            ends ? 1.0 : static_cast<double>((now - start_).count()) / static_cast<double>(duration_.count());
        if (ends)
            leave();
        const auto tick = tick_; // the call may destroy this animation
        if (*tick)
            (*tick)(progress);
    }

    void leave() {
        if (owner_)
            std::erase(owner_->running_, this);
        owner_ = nullptr;
    }

private:
    RunningAnimations* owner_; // nullptr once it has ended
    Duration start_;
    Duration duration_;
    std::shared_ptr<MainQueue::Tick> tick_;
};

RunningAnimations::~RunningAnimations() {
    while (!running_.empty())
        running_.back()->leave();
}

std::unique_ptr<MainQueue::Ticking> RunningAnimations::start(Duration now, Duration duration,
                                                             MainQueue::Tick tick) {
    return std::make_unique<Animation>(this, now, duration, std::move(tick));
}

void RunningAnimations::tickAll(Duration now) {
    const std::vector<Animation*> snapshot = running_;
    for (Animation* animation : snapshot)
        if (std::find(running_.begin(), running_.end(), animation) != running_.end())
            animation->tick(now);
}

} // namespace platform

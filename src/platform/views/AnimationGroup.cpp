#include "platform/views/AnimationGroup.h"

#include "platform/views/LayoutConstraint.h"
#include "platform/views/View.h"

#include <QEasingCurve>

#include <utility>

namespace platform {

namespace {

std::uint64_t lastAnimation = 0;

double between(double start, double target, double progress) {
    return progress >= 1 ? target : start + (target - start) * progress;
}

} // namespace

struct AnimationGroup::Run {
    using Change = std::function<void(double)>;

    MainQueue::Duration duration{};
    std::vector<std::function<Change()>> starts; // each takes over what it moves, from where that stands
    std::vector<Change> changes;
    std::function<void()> completion;
    std::unique_ptr<MainQueue::Ticking> ticking;

    void apply(double progress) const {
        const double eased = QEasingCurve(QEasingCurve::InOutSine).valueForProgress(progress);
        for (const auto& change : changes)
            change(eased);
    }

    // The last tick and the deferred work of the queue may come in either order. The first of them finishes
    // the animation.
    void finish() {
        apply(1);
        changes.clear();
        ticking.reset();
        if (const auto handler = std::exchange(completion, nullptr))
            handler();
    }
};

AnimationGroup::AnimationGroup(MainQueue::Duration duration)
    : run_(std::make_shared<Run>()) {
    run_->duration = duration;
}

void AnimationGroup::setCompletionHandler(std::function<void()> handler) {
    run_->completion = std::move(handler);
}

void AnimationGroup::moveConstant(LayoutConstraint& constraint, double target) {
    run_->starts.emplace_back([weak = QPointer(&constraint), target]() -> Run::Change {
        if (!weak)
            return {};
        const std::uint64_t number = ++lastAnimation;
        weak->animation_ = number;
        return [weak, number, start = weak->constant(), target](double progress) {
            if (weak && weak->animation_ == number)
                weak->moveTo(between(start, target, progress));
        };
    });
}

void AnimationGroup::fadeAlpha(View& view, double target) {
    run_->starts.emplace_back([weak = QPointer(&view), target]() -> Run::Change {
        if (!weak)
            return {};
        const std::uint64_t number = ++lastAnimation;
        weak->fade_ = number;
        return [weak, number, start = weak->alphaValue(), target](double progress) {
            if (weak && weak->fade_ == number)
                weak->setAlphaValue(between(start, target, progress));
        };
    });
}

void AnimationGroup::progress(std::function<void(double)> apply) {
    run_->starts.emplace_back([apply = std::move(apply)] { return apply; });
}

void AnimationGroup::end() {
    for (const auto& start : std::exchange(run_->starts, {}))
        if (auto change = start())
            run_->changes.push_back(std::move(change));
    MainQueue& queue = MainQueue::current();
    const std::weak_ptr<Run> weak = run_;
    run_->ticking = queue.animate(run_->duration, [weak](double progress) {
        if (const auto run = weak.lock())
            run->apply(progress);
    });
    queue.after(run_->duration, [run = run_] { run->finish(); });
}

} // namespace platform

#include "platform/views/AnimationGroup.h"

#include "platform/views/LayoutConstraint.h"
#include "platform/views/View.h"

#include <QEasingCurve>

namespace platform {

namespace {

std::uint64_t lastAnimation = 0;

} // namespace

struct AnimationGroup::Run {
    MainQueue::Duration duration{};
    std::vector<std::function<void(double)>> changes;
    std::function<void()> completion;
    std::unique_ptr<MainQueue::Ticking> ticking;

    void apply(double progress) const {
        const double eased = QEasingCurve(QEasingCurve::InOutSine).valueForProgress(progress);
        for (const auto& change : changes)
            change(eased);
    }

    // The queue's last tick and its deferred work may come in either order; whichever is first brings all to
    // its end.
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
    const std::uint64_t number = ++lastAnimation;
    constraint.animation_ = number;
    run_->changes.emplace_back(
        [weak = QPointer(&constraint), number, start = constraint.constant(), target](double progress) {
            if (!weak || weak->animation_ != number)
                return;
            weak->moveTo(progress >= 1 ? target : start + (target - start) * progress);
        });
}

void AnimationGroup::fadeAlpha(View& view, double target) {
    run_->changes.emplace_back([weak = QPointer(&view), start = view.alphaValue(), target](double progress) {
        if (weak)
            weak->setAlphaValue(progress >= 1 ? target : start + (target - start) * progress);
    });
}

void AnimationGroup::progress(std::function<void(double)> apply) {
    run_->changes.push_back(std::move(apply));
}

void AnimationGroup::end() {
    MainQueue& queue = MainQueue::current();
    const std::weak_ptr<Run> weak = run_;
    run_->ticking = queue.animate(run_->duration, [weak](double progress) {
        if (const auto run = weak.lock())
            run->apply(progress);
    });
    queue.after(run_->duration, [run = run_] { run->finish(); });
}

} // namespace platform

#pragma once

#include "platform/system/MainQueue.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

namespace platform {

class LayoutConstraint;
class View;

// Changes of constraints and alpha values that run together, eased in and out, for one duration. The
// completion handler runs once at the group's own end, also when a later group has taken over what it moved;
// what it still moves has arrived by then. A view or constraint that dies on the way is left out.
class AnimationGroup final {
public:
    explicit AnimationGroup(MainQueue::Duration duration);

    void setCompletionHandler(std::function<void()> handler);
    void moveConstant(LayoutConstraint& constraint, double target);
    void fadeAlpha(View& view, double target);
    // Any other number that moves from 0 to 1 with the group's pace.
    void progress(std::function<void(double)> apply);

    // Starts it. A group that is never ended does nothing.
    void end();

private:
    struct Run;

    std::shared_ptr<Run> run_;
};

} // namespace platform

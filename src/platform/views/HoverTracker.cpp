#include "platform/views/HoverTracker.h"

#include <QMouseEvent>

namespace platform {

// Never destroyed: it may outlive the application, whose widgets it holds.
HoverTracker& HoverTracker::shared() {
    static auto* const tracker = new HoverTracker;
    return *tracker;
}

void HoverTracker::enter(View& view, QPointF point) {
    View& root = view.rootView();
    if (&root != root_)
        follow(root);
    place_ = view.mapTo(view.window(), point);
    look();
}

void HoverTracker::follow(View& root) {
    leave();
    root_ = &root;
    window_ = root.window();
    handle_ = window_->windowHandle();
    hasHand_ = false;
    window_->installEventFilter(this);
    if (handle_)
        handle_->installEventFilter(this);
}

void HoverTracker::leave() {
    setHovered(nullptr);
    if (window_)
        window_->removeEventFilter(this);
    if (handle_)
        handle_->removeEventFilter(this);
    root_ = nullptr;
    window_ = nullptr;
    handle_ = nullptr;
}

void HoverTracker::look() {
    if (!root_ || View::isPressHeld())
        return;
    View* hit = root_->viewAtPointOfWindow(place_);
    setHovered(hit ? hit->clickTarget() : nullptr);
}

void HoverTracker::setHovered(View* view) {
    if (hovered_ != view) {
        if (hovered_)
            hovered_->setHovered(false);
        if (view)
            view->setHovered(true);
        hovered_ = view;
    }
    // The view that had the hand may be gone.
    const bool hand = view != nullptr;
    if (!window_ || hasHand_ == hand)
        return;
    hasHand_ = hand;
    // The cursor is the window's: the toolkit's own idea of what lies under the mouse may be another view.
    if (hasHand_)
        window_->setCursor(Qt::PointingHandCursor);
    else
        window_->unsetCursor();
}

bool HoverTracker::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseMove:
        if (watched == handle_) {
            place_ = static_cast<QMouseEvent*>(event)->position();
            look();
        }
        break;
    case QEvent::MouseButtonRelease: // which ends the press only later
        if (watched == handle_) {
            place_ = static_cast<QMouseEvent*>(event)->position();
            QMetaObject::invokeMethod(this, &HoverTracker::look, Qt::QueuedConnection);
        }
        break;
    case QEvent::UpdateRequest: // the window is about to paint
        if (watched == window_)
            look();
        break;
    case QEvent::Leave:
    case QEvent::Hide:
        leave();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace platform

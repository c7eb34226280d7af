#pragma once

#include "platform/views/View.h"

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace platform {

// Knows which view the mouse rests on: the one that a click there would act on, chosen as for a press by the
// root view's hitTest. That view shows the hover, and its window has the hand for a cursor. There is one
// mouse and one tracker.
//
// What comes under a mouse that rests, by a change of the views, is noticed right before the change is
// painted. While a press is held nothing changes.
class HoverTracker final : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static HoverTracker& shared();

    // The mouse has come to a view, at a point of that view. The first call for a window begins to follow the
    // mouse there.
    void enter(View& view, QPointF point);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    HoverTracker() = default;

    void follow(View& root);
    void leave();
    void look();
    void setHovered(View* view);

    QPointer<View> root_;
    QPointer<QWidget> window_;
    QPointer<QWindow> handle_; // of the window: it has the moves of the mouse, whatever lies under it
    QPointF place_;            // of the mouse in the window
    QPointer<View> hovered_;
    bool hasHand_ = false; // the window
};

} // namespace platform

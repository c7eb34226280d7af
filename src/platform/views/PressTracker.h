#pragma once

#include "platform/views/View.h"

#include <QMouseEvent>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QWindow>

#include <memory>

namespace platform {

// Decides which view takes a press of the left mouse button, and keeps to that view until the release. There
// is one mouse and one tracker.
//
// The root view's hitTest chooses the view; a disabled view takes no press. Presses that follow each other
// within the time and the distance of a double click are a series: each goes to the view that took the first
// one or to nobody, because the user did not aim at what has come under the mouse meanwhile.
//
// The view that took a press gets its release, even if it was taken out of the window in between. A view that
// is hidden or disabled in between loses the press.
class PressTracker final : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static PressTracker& shared();

    // A press, move or release of the left button that the toolkit sent to some view.
    void press(View& receiver, const QMouseEvent& event);
    void drag(View& receiver, const QMouseEvent& event) const;
    void release(View& receiver, const QMouseEvent& event);

    [[nodiscard]] bool isHeld() const { return held_.target != nullptr; }
    // Ends the press that is held. Its release reaches nobody.
    void cancel();
    // The same if the press is held by a view or one of its subviews.
    void cancelIn(const View& view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Held {
        QPointer<View> target;
        std::shared_ptr<View> owner; // keeps the target alive until the release
        QPointer<QWidget> window;
        QPointF pressedAt;         // of the window
        QPointF pressedAtInTarget; // of the target, where that was then
    };
    struct Series {
        QPointer<View> taker; // of its first press
        QPointF position;     // of its latest press, on the desktop
        quint64 time = 0;     // of its latest press, milliseconds
        bool hasBegun = false;
    };

    PressTracker() = default;

    [[nodiscard]] View* viewInSeries(View* hit, const QMouseEvent& event);
    [[nodiscard]] bool continuesSeries(const QMouseEvent& event) const;
    [[nodiscard]] Held letGo();
    void finish(QPointF place);
    [[nodiscard]] static MouseEvent eventAt(const Held& held, QPointF place);

    Held held_;
    Series series_;
};

} // namespace platform

#pragma once

#include <QAccessible>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QStringList>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QPainter;

namespace platform {

// A mouse event on its way through the views.
struct MouseEvent {
    QPointF globalPosition;     // points of the whole desktop
    QPointF positionInTarget{}; // of the view that took the press, as if it had not moved since
};

// What assistive programs are told of a view. Without a role of its own a view is a mere group.
struct AccessibleTraits {
    QAccessible::Role role = QAccessible::Grouping;
    QString name;
    QString description;
    std::optional<bool> isExpanded; // for views that open and close
    QStringList actions;            // names as QAccessibleActionInterface gives them
    bool isBusy = false;            // with something that the user waits for
};

// A rectangle of the screen that paints itself and takes part in a tree of views. The tree is Qt's tree of
// widgets; what a view adds is the platform's way with frames, hiding, alpha and presses: hitTest of the root
// view alone decides who gets a press, and an event that a view does not handle climbs its superviews.
//
// A frame is a rectangle of the superview with the origin at its top left, in points, which may be fractions;
// the widget covers the whole points that the frame touches. A frame set with setFrame is physical. One set
// with setLogicalFrame counts x from the leading edge and is placed for the direction of reading.
class View : public QWidget, public std::enable_shared_from_this<View> {
    Q_OBJECT

public:
    explicit View(QWidget* parent = nullptr);
    // Lets go of the subviews that shared references own; Qt deletes the others.
    ~View() override;

    // --- the tree

    [[nodiscard]] View* superview() const;
    [[nodiscard]] std::vector<View*> subviews() const; // from the back to the front

    // Puts a view in front of the subviews and shows it, unless it is hidden. It is not owned.
    void addSubview(View& view);
    void removeFromSuperview();

    // --- geometry

    // As it was set; the widget's own geometry where Qt has resized the view since (a window, an interface
    // file).
    [[nodiscard]] QRectF frame() const;
    [[nodiscard]] QRectF bounds() const { return {QPointF(), frame().size()}; }
    void setFrame(const QRectF& frame);
    void setLogicalFrame(const QRectF& frame);
    [[nodiscard]] Qt::LayoutDirection userInterfaceLayoutDirection() const { return layoutDirection(); }

    // A view that fills its superview takes its bounds for a frame whenever they change.
    void setFillsSuperview(bool fills) { fillsSuperview_ = fills; }

    // Gives the subviews their frames; called whenever the view's own size is set or changes.
    virtual void layoutViews();

    // The part of the view, in its own coordinates, that no ancestor cuts off.
    [[nodiscard]] QRect exposedRect() const;

    // Scrolls whatever the view lies in just as far as it takes to show a rectangle of the view; the upper
    // part of one that is too tall.
    virtual void scrollRectToVisible(const QRectF& rect);

    // --- what shows

    // Whether the view itself is hidden. A view that is not hidden may lie in a hidden one.
    void setHidden(bool hidden);
    [[nodiscard]] bool isHidden() const { return hidden_; }

    // 1 is opaque. The view fades as a whole, its subviews with it.
    void setAlphaValue(double alpha);
    [[nodiscard]] double alphaValue() const { return alpha_; }

    // Cuts the view down to a rectangle of its own, for the eye, the mouse, the keyboard and assistive
    // programs alike; an empty one leaves nothing of it, none lifts the cut.
    void setClip(std::optional<QRectF> clip);

    // --- events

    // The view that a point of the superview hits: the frontmost subview that has one there, else this view;
    // null if the view is hidden or the point lies outside. A view of alpha 0 is hit. A disabled view is hit
    // itself, in place of its subviews, and takes no press.
    [[nodiscard]] virtual View* hitTest(QPointF point);

    // The view that takes a press at a point of the window, for a root view; null if none does.
    [[nodiscard]] View* viewAtPointOfWindow(QPointF point);
    [[nodiscard]] View& rootView();

    virtual void mouseDown(const MouseEvent& event);
    virtual void mouseDragged(const MouseEvent& event);
    virtual void mouseUp(const MouseEvent& event);
    // In place of mouseUp: the press has ended without a release, so it has no effect.
    virtual void mouseCancelled();

    // The view that a click on this one acts on, which shows when the mouse rests there; null if a click does
    // nothing. Like a press, the question climbs the superviews.
    [[nodiscard]] virtual View* clickTarget();

    // Whether a press waits for its release. Dropped, the release reaches nobody: a window that hides
    // meanwhile never hears of it.
    [[nodiscard]] static bool isPressHeld();
    static void dropHeldPress();

    // Called once, when the view and its outlets have come out of an interface file.
    virtual void awakeFromNib() {}

    // The text of the tooltip. An empty text shows no tooltip.
    [[nodiscard]] virtual QString toolTipText() const { return {}; }

    // What assistive programs are told of this view.
    [[nodiscard]] virtual AccessibleTraits accessibleTraits() const { return {}; }
    // Performs one of the actions that the traits name, as an assistive program asked.
    virtual void performAccessibleAction(const QString& action) { Q_UNUSED(action) }

    // Tell assistive programs that isExpanded or isBusy of the traits has changed. The desktop's bridge
    // passes on only changes of the description, so a view that opens and closes says so in its description
    // too, and so does one that is busy.
    void notifyExpandedChanged();
    void notifyBusyChanged();

    // Called when an ancestor has scrolled or changed its size, so that exposedRect may have changed.
    virtual void exposedRectChanged() {}

protected:
    // Whether a point of the superview lies in the view and outside what was cut off.
    [[nodiscard]] bool takesPoint(QPointF point) const;

    // Whether to draw a focus ring: a key has moved the focus to the view, not a click or a new window.
    [[nodiscard]] bool showsFocus() const { return showsFocus_; }

    // Whether the mouse rests on the view and a click would act on it.
    [[nodiscard]] bool showsHover() const { return showsHover_; }
    // Paints the tint of a view that shows the hover.
    static void paintHover(QPainter& painter, const QRectF& rect);

    // The view's upper left corner in the superview. (A window's pos() would be its title bar's.)
    [[nodiscard]] QPointF origin() const { return geometry().topLeft(); }

    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    friend class AnimationGroup;
    friend class HoverTracker;

    [[nodiscard]] bool routeMouse(QEvent& event);
    [[nodiscard]] bool explain(QEvent& event);
    void notifyStateChanged(QAccessible::State changed);
    void applyVisibility();
    void setHovered(bool hovered);
    void place(const QRectF& frame, const QRect& geometry);

    QRectF frame_;
    std::optional<QRectF> clip_;
    double alpha_ = 1;
    std::uint64_t fade_ = 0; // the animation that fades it, by number; the latest wins
    bool hidden_ = false;
    bool fillsSuperview_ = false;
    bool showsFocus_ = false;
    bool showsHover_ = false;
};

// Makes a view that its references own: a Qt parent never deletes it, and the last reference takes it out of
// its superview and has the event loop delete it, so that a handler that is running on it may still end.
template <class T, class... Arguments>
[[nodiscard]] std::shared_ptr<T> makeView(Arguments&&... arguments) {
    return std::shared_ptr<T>(new T(std::forward<Arguments>(arguments)...), [](View* view) {
        view->removeFromSuperview();
        view->deleteLater();
    });
}

// Tells a view and all views below it that their exposed rectangles may have changed.
void notifyExposedRectChanged(QWidget& top);

} // namespace platform

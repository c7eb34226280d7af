#include "platform/views/View.h"

#include "platform/views/Accessibility.h"

#include <QFocusEvent>
#include <QGraphicsOpacityEffect>
#include <QMouseEvent>
#include <QStyle>

#include <utility>

namespace platform {

namespace {

// The view that took the press that is held, and the one that took the last press at all. There is one mouse.
QPointer<View> heldTarget;
QPointer<View> lastTarget;

// With the upper and left edge, without the lower and right one.
bool contains(const QRectF& rect, QPointF point) {
    return point.x() >= rect.left() && point.x() < rect.right() && point.y() >= rect.top() &&
           point.y() < rect.bottom();
}

} // namespace

View::View(QWidget* parent)
    : QWidget(parent) {}

View::~View() {
    for (View* subview : subviews())
        if (!subview->weak_from_this().expired())
            subview->removeFromSuperview();
}

View* View::superview() const {
    return qobject_cast<View*>(parentWidget());
}

std::vector<View*> View::subviews() const {
    std::vector<View*> views;
    for (QObject* child : children())
        if (auto* view = qobject_cast<View*>(child))
            views.push_back(view);
    return views;
}

void View::addSubview(View& view) {
    if (view.parentWidget() != this)
        view.setParent(this);
    view.raise();
    view.applyVisibility();
}

void View::removeFromSuperview() {
    if (!parentWidget())
        return;
    QWidget::setVisible(false);
    setParent(nullptr);
}

QRectF View::frame() const {
    const QRect covered = geometry();
    return frame_.toAlignedRect().size() == covered.size() ? frame_ : QRectF(covered);
}

void View::setFrame(const QRectF& frame) {
    place(frame, frame.toAlignedRect());
}

void View::setLogicalFrame(const QRectF& frame) {
    const QRect rect = frame.toAlignedRect();
    const QWidget* parent = parentWidget();
    place(frame, parent ? QStyle::visualRect(layoutDirection(), parent->rect(), rect) : rect);
}

// Qt sends the resize event of a view that does not show yet only when it does.
void View::place(const QRectF& frame, const QRect& geometry) {
    const bool resized = frame.size() != frame_.size() || geometry.size() != size();
    frame_ = frame;
    setGeometry(geometry);
    if (resized)
        layoutViews();
}

void View::layoutViews() {
    for (View* subview : subviews())
        if (subview->fillsSuperview_)
            subview->setFrame(bounds());
}

QRect View::exposedRect() const {
    QRect exposed = rect();
    QPoint offset;
    for (const QWidget* widget = this; widget->parentWidget() && !widget->isWindow();) {
        offset += widget->pos();
        widget = widget->parentWidget();
        exposed &= widget->rect().translated(-offset);
    }
void View::scrollRectToVisible(const QRectF& rect) {
    if (View* above = superview())
        above->scrollRectToVisible(rect.translated(origin()));
}

    return exposed;
}

void View::setHidden(bool hidden) {
    hidden_ = hidden;
    applyVisibility();
}

void View::setAlphaValue(double alpha) {
    if (alpha_ == alpha)
        return;
    alpha_ = alpha;
    if (alpha >= 1) {
        setGraphicsEffect(nullptr);
        return;
    }
    auto* effect = qobject_cast<QGraphicsOpacityEffect*>(graphicsEffect());
    if (!effect) {
        effect = new QGraphicsOpacityEffect(this);
        setGraphicsEffect(effect);
    }
    effect->setOpacity(alpha);
}

void View::setClip(std::optional<QRectF> clip) {
    if (clip_ == clip)
        return;
    clip_ = clip;
    if (!clip_)
        clearMask();
    else if (!clip_->isEmpty())
        setMask(clip_->toAlignedRect());
    applyVisibility();
}

// A view without a parent would open as a window of its own.
void View::applyVisibility() {
    const bool visible = !hidden_ && !(clip_ && clip_->isEmpty());
    if (parentWidget() && QWidget::isHidden() == visible)
        QWidget::setVisible(visible);
    else if (!parentWidget() && !visible)
        QWidget::setVisible(false);
}

bool View::takesPoint(QPointF point) const {
    return !hidden_ && contains(geometry(), point) && (!clip_ || contains(*clip_, point - origin()));
}

View* View::hitTest(QPointF point) {
    if (!takesPoint(point))
        return nullptr;
    const QPointF inside = point - origin();
    const std::vector<View*> views = subviews();
    for (auto subview = views.rbegin(); subview != views.rend(); ++subview) // the topmost first
        if (View* hit = (*subview)->hitTest(inside))
            return hit;
    return this;
}

void View::mouseDown(const MouseEvent& event) {
    if (View* next = superview())
        next->mouseDown(event);
}

void View::mouseDragged(const MouseEvent& event) {
    if (View* next = superview())
        next->mouseDragged(event);
}

void View::mouseUp(const MouseEvent& event) {
    if (View* next = superview())
        next->mouseUp(event);
}

bool View::isPressHeld() {
    return heldTarget != nullptr;
}

void View::dropHeldPress() {
    heldTarget = nullptr;
}

View* View::rootView() {
    View* root = this;
    while (View* above = root->superview())
        root = above;
    return root;
}

bool View::event(QEvent* event) {
    return routeMouse(*event) || QWidget::event(event);
}

// Qt hands an event to the deepest widget under the mouse; who gets it is the root view's to say.
bool View::routeMouse(QEvent& event) {
    const auto type = event.type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonDblClick &&
        type != QEvent::MouseMove && type != QEvent::MouseButtonRelease)
        return false;
    event.accept();
    const auto& mouse = static_cast<QMouseEvent&>(event);
    // Not the event's own global position: until the window manager's word of where it put the window has
    // come, that one and the toolkit's idea of the window's place do not fit each other. This one maps back
    // to where in the window the mouse is, in any case.
    const MouseEvent moved{mapToGlobal(mouse.position())};
    if (type == QEvent::MouseMove) {
        // Qt drops the release of a widget that was taken out while it was held.
        if (heldTarget && (mouse.buttons() & Qt::LeftButton))
            heldTarget->mouseDragged(moved);
        return true;
    }
    if (mouse.button() != Qt::LeftButton)
        return true;
    if (type == QEvent::MouseButtonRelease) {
        if (View* target = std::exchange(heldTarget, nullptr))
            target->mouseUp(moved);
        return true;
    }
    press(moved, type == QEvent::MouseButtonDblClick);
    return true;
}

// The second press of a double click goes to the view that took the first or to nobody: the first may have
// put another view in that place, which the user never aimed at.
void View::press(const MouseEvent& event, bool isSecondOfDoubleClick) {
    View* root = rootView();
    const QPointF inside = root->mapFromGlobal(event.globalPosition);
    View* target = root->hitTest(inside + root->origin());
    if (isSecondOfDoubleClick && target != lastTarget)
        target = nullptr;
    heldTarget = target;
    lastTarget = target;
    if (target)
        target->mouseDown(event);
}

void View::notifyExpandedChanged() {
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    QAccessibleStateChangeEvent stateChange(this, changed);
    tellAssistivePrograms(stateChange);
    QAccessibleEvent descriptionChange(this, QAccessible::DescriptionChanged);
    tellAssistivePrograms(descriptionChange);
}

// No view looks otherwise while it is disabled, so that nothing is drawn anew; assistive programs are told.
void View::changeEvent(QEvent* event) {
    if (event->type() != QEvent::EnabledChange) {
        QWidget::changeEvent(event);
        return;
    }
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent change(this, changed);
    tellAssistivePrograms(change);
}

void View::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutViews();
}

void View::focusInEvent(QFocusEvent* event) {
    showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                  event->reason() == Qt::ShortcutFocusReason;
    QWidget::focusInEvent(event);
}

void View::focusOutEvent(QFocusEvent* event) {
    showsFocus_ = false;
    QWidget::focusOutEvent(event);
}

void notifyExposedRectChanged(QWidget& top) {
    if (auto* view = qobject_cast<View*>(&top))
        view->exposedRectChanged();
    for (QObject* child : top.children())
        if (auto* widget = qobject_cast<QWidget*>(child); widget && !widget->isWindow())
            notifyExposedRectChanged(*widget);
}

} // namespace platform

#include "platform/views/View.h"

#include "platform/views/Accessibility.h"
#include "platform/views/DevicePixels.h"
#include "platform/views/HoverTracker.h"
#include "platform/views/PressTracker.h"
#include "platform/views/ToolTip.h"

#include <QFocusEvent>
#include <QGraphicsOpacityEffect>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <utility>

namespace platform {

namespace {

constexpr QColor hoverColor(255, 255, 255, 20);
constexpr double hoverRadius = 6;

// A rectangle includes its upper and left edges and excludes its lower and right ones.
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

// Qt sends the resize event of a hidden view only when the view is shown.
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
    return exposed;
}

void View::scrollRectToVisible(const QRectF& rect) {
    if (View* above = superview())
        above->scrollRectToVisible(rect.translated(origin()));
}

void View::setHidden(bool hidden) {
    hidden_ = hidden;
    if (hidden)
        PressTracker::shared().cancelIn(*this);
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
    if (!isEnabled())
        return this;
    const QPointF inside = point - origin();
    const std::vector<View*> views = subviews();
    for (auto subview = views.rbegin(); subview != views.rend(); ++subview) // the topmost first
        if (View* hit = (*subview)->hitTest(inside))
            return hit;
    return this;
}

View& View::rootView() {
    View* root = this;
    while (View* above = root->superview())
        root = above;
    return *root;
}

View* View::viewAtPointOfWindow(QPointF point) {
    View* hit = hitTest(mapFrom(window(), point) + origin());
    return hit && hit->isEnabled() ? hit : nullptr;
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

void View::mouseCancelled() {
    if (View* next = superview())
        next->mouseCancelled();
}

View* View::clickTarget() {
    View* above = superview();
    return above ? above->clickTarget() : nullptr;
}

bool View::isPressHeld() {
    return PressTracker::shared().isHeld();
}

void View::dropHeldPress() {
    PressTracker::shared().cancel();
}

bool View::event(QEvent* event) {
    if (event->type() == QEvent::Enter)
        HoverTracker::shared().enter(*this, static_cast<QEnterEvent*>(event)->position());
    return routeMouse(*event) || explain(*event) || QWidget::event(event);
}

// Qt hands an event to the deepest widget under the mouse; the tracker knows which view it is for.
bool View::routeMouse(QEvent& event) {
    const auto type = event.type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonDblClick &&
        type != QEvent::MouseMove && type != QEvent::MouseButtonRelease)
        return false;
    event.accept();
    const auto& mouse = static_cast<QMouseEvent&>(event);
    PressTracker& tracker = PressTracker::shared();
    if (type == QEvent::MouseMove) {
        if (mouse.buttons() & Qt::LeftButton)
            tracker.drag(*this, mouse);
    } else if (mouse.button() == Qt::LeftButton) {
        if (type == QEvent::MouseButtonRelease)
            tracker.release(*this, mouse);
        else
            tracker.press(*this, mouse);
    }
    return true;
}

// Without a text here the toolkit asks the superview.
bool View::explain(QEvent& event) {
    if (event.type() != QEvent::ToolTip)
        return false;
    const QString text = toolTipText();
    if (!text.isEmpty())
        showToolTip(static_cast<QHelpEvent&>(event).globalPos(), text, *this);
    return !text.isEmpty();
}

void View::notifyExpandedChanged() {
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    notifyStateChanged(changed);
}

void View::notifyBusyChanged() {
    QAccessible::State changed;
    changed.busy = true;
    notifyStateChanged(changed);
}

void View::notifyStateChanged(QAccessible::State changed) {
    QAccessibleStateChangeEvent stateChange(this, changed);
    tellAssistivePrograms(stateChange);
    QAccessibleEvent descriptionChange(this, QAccessible::DescriptionChanged);
    tellAssistivePrograms(descriptionChange);
}

// A disabled view looks the same, so it is not painted again. Assistive programs are told of the change.
void View::changeEvent(QEvent* event) {
    if (event->type() != QEvent::EnabledChange) {
        QWidget::changeEvent(event);
        return;
    }
    if (!isEnabled())
        PressTracker::shared().cancelIn(*this);
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent change(this, changed);
    tellAssistivePrograms(change);
}

void View::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutViews();
}

void View::setHovered(bool hovered) {
    showsHover_ = hovered;
    update();
}

void View::paintHover(QPainter& painter, const QRectF& rect) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(hoverColor);
    painter.drawRoundedRect(onDevicePixels(painter, rect), hoverRadius, hoverRadius);
    painter.restore();
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

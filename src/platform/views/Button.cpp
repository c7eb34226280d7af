#include "platform/views/Button.h"

#include "platform/images/BundleImages.h"

#include <QKeyEvent>
#include <QPainter>

namespace platform {

namespace {

// The standard cell has no state, so all buttons without a cell of their own share one.
const std::shared_ptr<ButtonCell>& standardCell() {
    static const auto cell = std::make_shared<ButtonCell>();
    return cell;
}

constexpr QColor borderColor(255, 255, 255, 60);
constexpr QColor focusColor(255, 255, 255, 150);

} // namespace

Button::Button(QWidget* parent)
    : View(parent)
    , cell_(standardCell()) {
    setFocusPolicy(Qt::TabFocus);
}

Button::~Button() = default;

void Button::setCell(std::shared_ptr<ButtonCell> cell) {
    cell_ = std::move(cell);
    update();
}

void Button::setImage(const Image& image) {
    image_ = image;
    update();
}

void Button::setImageName(const QString& name) {
    imageName_ = name;
    setImage(imageNamed(name));
}

void Button::setAttributedTitle(const AttributedString& title) {
    title_ = title;
    update();
}

void Button::setBordered(bool bordered) {
    bordered_ = bordered;
    update();
}

void Button::setFocusRingType(FocusRingType type) {
    focusRingType_ = type;
    update();
}

QString Button::toolTipText() const {
    return helpTextKey_ && isEnabled() ? qtTrId(helpTextKey_) : QString();
}

void Button::performClick() {
    if (!isEnabled())
        return;
    // The action may destroy the button.
    if (const auto action = action_)
        action();
}

void Button::mouseDown(const MouseEvent&) {
    setHighlighted(true);
}

void Button::mouseDragged(const MouseEvent& event) {
    setHighlighted(rect().contains(event.positionInTarget.toPoint()));
}

void Button::mouseUp(const MouseEvent& event) {
    mouseDragged(event);
    if (!highlighted_)
        return;
    setHighlighted(false);
    performClick();
}

void Button::mouseCancelled() {
    setHighlighted(false);
}

void Button::setHighlighted(bool highlighted) {
    if (highlighted_ == highlighted)
        return;
    highlighted_ = highlighted;
    cell_->highlight(highlighted, bounds(), *this);
}

AccessibleTraits Button::accessibleTraits() const {
    AccessibleTraits traits;
    traits.role = QAccessible::Button;
    traits.name = title_.text;
    if (traits.name.isEmpty() && helpTextKey_)
        traits.name = qtTrId(helpTextKey_);
    traits.actions = {QAccessibleActionInterface::pressAction()};
    return traits;
}

void Button::performAccessibleAction(const QString& action) {
    if (action == QAccessibleActionInterface::pressAction())
        performClick();
}

void Button::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF rect = bounds();
    if (showsHover())
        paintHover(painter, rect);
    if (bordered_ || (showsFocus() && focusRingType_ == FocusRingType::Default)) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(showsFocus() ? focusColor : borderColor, 1));
        painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    }
    if (image_)
        cell_->drawImage(painter, image_, rect, *this);
    cell_->drawTitle(painter, title_, rect, *this);
}

void Button::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space && event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return View::keyPressEvent(event);
    if (!event->isAutoRepeat())
        performClick();
}

} // namespace platform

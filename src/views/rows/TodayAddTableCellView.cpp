#include "views/rows/TodayAddTableCellView.h"

#include "platform/views/Fonts.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr double captionSize = 12; // that of the dates, which saves loading another font
constexpr double restingAlpha = 0.75;
constexpr double pressedAlpha = 0.5;
constexpr double focusAlpha = 0.35;
constexpr double focusRadius = 4;

QColor white(double alpha) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha));
}

} // namespace

TodayAddTableCellView::TodayAddTableCellView(QWidget* parent)
    : View(parent) {
    setFocusPolicy(Qt::TabFocus);
}

void TodayAddTableCellView::awakeFromNib() {
    View::awakeFromNib();
    titleLabel->setTextColor(white(restingAlpha));
    titleLabel->setLabelFont(platform::systemFont(captionSize));
    titleLabel->setLineBreakMode(platform::Label::LineBreakMode::TruncatingTail);
    addButton->setHelpTextKey(QT_TRID_NOOP("AddButtonHelp"));
    layoutViews();
}

void TodayAddTableCellView::addButtonClick() {
    if (const auto receiver = delegate)
        receiver->todayAddTableViewCellClickAddButton();
}

// The superviews receive the press but not the release, on purpose.
void TodayAddTableCellView::mouseDown(const platform::MouseEvent& event) {
    View::mouseDown(event);
    titleLabel->setTextColor(white(pressedAlpha));
}

// The position of the release does not matter, on purpose.
void TodayAddTableCellView::mouseUp(const platform::MouseEvent&) {
    reportContentClick();
    titleLabel->setTextColor(white(restingAlpha));
}

void TodayAddTableCellView::mouseCancelled() {
    titleLabel->setTextColor(white(restingAlpha));
}

void TodayAddTableCellView::reportContentClick() {
    if (const auto receiver = delegate)
        receiver->todayAddTableViewCellClickContentCell();
}

// Every click that does not hit the button goes to the click view, which passes it to this row. That includes
// points outside the row, on purpose.
platform::View* TodayAddTableCellView::hitTest(QPointF point) {
    platform::View* hit = View::hitTest(point);
    platform::View* button = addButton.get();
    if (hit == button)
        return hit;
    return &*clickView;
}

platform::View* TodayAddTableCellView::clickTarget() {
    return contentIsClickable ? this : nullptr;
}

void TodayAddTableCellView::layoutViews() {
    const double right = bounds().width();
    clickView->setLogicalFrame(bounds());
    addButton->setLogicalFrame(addButton->frame());
    const QRectF title = titleLabel->frame();
    titleLabel->setLogicalFrame(
        QRectF(title.x(), title.y(), std::max(0.0, right - title.x()), title.height()));
}

platform::AccessibleTraits TodayAddTableCellView::accessibleTraits() const {
    platform::AccessibleTraits traits;
    traits.role = QAccessible::ListItem;
    traits.name = titleLabel->stringValue();
    traits.actions = {QAccessibleActionInterface::pressAction()};
    return traits;
}

void TodayAddTableCellView::performAccessibleAction(const QString&) {
    reportContentClick();
}

void TodayAddTableCellView::paintEvent(QPaintEvent*) {
    if (!showsFocus() && !showsHover())
        return;
    QPainter painter(this);
    if (showsHover())
        paintHover(painter, QRectF(rect()).adjusted(0, 1, 0, -2));
    if (!showsFocus())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(white(focusAlpha), 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 1.5, -0.5, -2.5), focusRadius, focusRadius);
}

void TodayAddTableCellView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space && event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return View::keyPressEvent(event);
    if (!event->isAutoRepeat())
        reportContentClick();
}

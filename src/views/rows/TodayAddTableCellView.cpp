#include "views/rows/TodayAddTableCellView.h"

#include "platform/views/Fonts.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr double captionSize = 12; // as the dates: one font fewer on the way to the first frame
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

// The press goes on to the superviews and the release does not, on purpose.
void TodayAddTableCellView::mouseDown(const platform::MouseEvent& event) {
    View::mouseDown(event);
    titleLabel->setTextColor(white(pressedAlpha));
}

// Where the mouse is released is not asked, on purpose.
void TodayAddTableCellView::mouseUp(const platform::MouseEvent&) {
    reportContentClick();
    titleLabel->setTextColor(white(restingAlpha));
}

void TodayAddTableCellView::reportContentClick() {
    if (const auto receiver = delegate)
        receiver->todayAddTableViewCellClickContentCell();
}

// All but the button's own clicks go to the click view, which hands them on to this row; a point outside the
// row too, on purpose, while there is a button.
platform::View* TodayAddTableCellView::hitTest(QPointF point) {
    platform::View* hit = View::hitTest(point);
    platform::View* button = addButton.get();
    if (hit == button)
        return hit;
    return &*clickView;
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
    if (!showsFocus())
        return;
    QPainter painter(this);
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

#include "views/rows/TodayTableCellView.h"

#include "exchange/TodayWidgetLogic.h"
#include "platform/images/BundleImages.h"
#include "platform/system/DateText.h"
#include "platform/system/Fatal.h"
#include "platform/views/AnimationGroup.h"
#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

using namespace std::chrono_literals;

namespace {

constexpr double badgeCornerRadius = 4;
constexpr double titleSize = 15;
constexpr double dateSize = 12;
constexpr double amountSize = 16;
constexpr double narrowestAmount = 50;
constexpr double widestAmount = 140;
constexpr double amountLabelExtra = 2;
constexpr double badgeExtra = 24;
constexpr double titleSpaceExtra = 12 + 18 + 1;

constexpr auto slideDuration = 200ms;

constexpr QColor focusColor(255, 255, 255, 90);

// The frame of a view from the interface file with another left edge and width.
QRectF inColumn(const platform::View& view, double x, double width) {
    const QRectF frame = view.frame();
    return {x, frame.y(), width, frame.height()};
}

} // namespace

TodayTableCellView::TodayTableCellView(QWidget* parent)
    : View(parent) {
    setFocusPolicy(Qt::TabFocus);
}

void TodayTableCellView::awakeFromNib() {
    View::awakeFromNib();
    sumBackgroundView->setMasksToBounds(true);
    sumBackgroundView->setCornerRadius(badgeCornerRadius);
    rightButtonsPanel->generateButtons();
    // The row owns the panel, so the panel's reference to the row must not own it.
    rightButtonsPanel->delegate = std::shared_ptr<TodayButtonsPanelDelegate>(std::shared_ptr<void>(), this);
    titleLabel->setLineBreakMode(platform::Label::LineBreakMode::TruncatingTail);
    layoutViews();
}

void TodayTableCellView::configureForItem(const TodayTransactionPtr& newItem, double maxSum) {
    laysOutLater_ = true;
    if (!std::isnan(maxSum))
        configureAmountColumn(newItem->amount, maxSum);
    item = newItem;
    titleLabel->setHidden(false);
    subtitleLabel->setHidden(false);
    transactionImageView->setImage(
        TodayWidgetLogic::imageByName(item->imageName, transactionImageView->frame()));
    transactionImageView->setAlphaValue(1);
    titleLabel->setLabelFont(platform::systemFont(titleSize));
    titleLabel->setStringValue(item->name);
    titleLabel->setTextColor(mainColor);
    configureDate();
    sumLabel->setStringValue(item->amount);
    configureBadge();
    configureDueState();
    sumLabel->setTextColor(sumTextColor);
    laysOutLater_ = false;
    layoutViews();
}

void TodayTableCellView::configureAmountColumn(const QString& amount, double maxSum) {
    const double w = std::max(narrowestAmount, std::min(widestAmount, maxSum));
    // The constant is compared with w although it is then set to w + 2, on purpose: the constraints are set
    // on every call unless the interface file has the constant w.
    if (sumWidthLayoutConstraint->constant() != w) {
        sumWidthLayoutConstraint->setConstant(w + amountLabelExtra);
        sumBackgroundWidthLayoutConstraint->setConstant(w + badgeExtra);
        titleRightSpaceLayoutConstraint->setConstant(w + titleSpaceExtra);
    }
    const QFont font = platform::boldSystemFont(amountSize);
    const double width = platform::textWidth(amount, font);
    sumLabel->setLabelFont(w < width ? platform::boldSystemFont(amountSize * w / width) : font);
}

void TodayTableCellView::configureDate() {
    subtitleLabel->setStringValue(dateText(*item));
    subtitleLabel->setLabelFont(platform::systemFont(dateSize));
    subtitleLabel->sizeToFit();
    subtitleWidthLayoutConstraint->setConstant(subtitleLabel->bounds().width());
}

void TodayTableCellView::configureBadge() {
    if (item->isIncome == item->isExpense)
        sumBackgroundBox->setFillColor(sumBackgroundDefaultColor);
    else
        sumBackgroundBox->setFillColor(item->isIncome ? sumBackgroundIncomeColor : sumBackgroundExpenseColor);
}

void TodayTableCellView::configureDueState() {
    const bool isOverdue = item->isOverdue();
    const QColor color = isOverdue ? overdueColor : mainColor;
    const platform::Image glyph = platform::imageNamed(isOverdue ? QStringLiteral("transactionOverdue")
                                                                 : QStringLiteral("transactionPlanned"));
    platform::require(!glyph.isNull());
    transactionTypeImageView->setImage(templateImageWithTintColor(glyph, color));
    subtitleLabel->setTextColor(color);
}

QString TodayTableCellView::dateText(const TodayTransaction& item) {
    return platform::mediumDateText(item.date);
}

platform::Image TodayTableCellView::templateImageWithTintColor(const platform::Image& image,
                                                               const QColor& tint) {
    return image.tinted(tint);
}

// The content keeps its leading edge and uncovers the buttons at its trailing edge. Its subviews are laid out
// for the width of the whole row, so that only the clip of the content moves during a slide.
void TodayTableCellView::layoutViews() {
    if (laysOutLater_)
        return;
    const double right = bounds().width();
    const double height = bounds().height();
    const double slide = cellContentViewRightSpaceConstraint->constant();
    cellContentView->setLogicalFrame(QRectF(0, 0, std::max(0.0, right + slide), height));

    const double panelWidth = widthConstraint->constant();
    rightButtonsPanel->setLogicalFrame(QRectF(right - panelWidth, 0, panelWidth, height));
    // The content is translucent, so the buttons are clipped to the area that it does not cover. The clip is
    // rounded down to whole points, because the content paints all of a point that it covers partly.
    const double strip = std::clamp(std::floor(-slide), 0.0, panelWidth);
    const bool mirrored = userInterfaceLayoutDirection() == Qt::RightToLeft;
    rightButtonsPanel->setClip(QRectF(mirrored ? 0 : panelWidth - strip, 0, strip, height));

    layoutContent(right);
}

void TodayTableCellView::layoutContent(double rowWidth) {
    const auto place = [](platform::View& view, double x, double width) {
        view.setLogicalFrame(inColumn(view, x, width));
    };
    place(*transactionImageView, transactionImageView->frame().x(), transactionImageView->frame().width());
    place(*transactionTypeImageView, transactionTypeImageView->frame().x(),
          transactionTypeImageView->frame().width());
    const double titleX = titleLabel->frame().x();
    const double textEnd = rowWidth - titleRightSpaceLayoutConstraint->constant();
    place(*titleLabel, titleX, std::max(0.0, textEnd - titleX));
    // In a narrow row the date is cut so that it does not overlap the badge.
    const double dateX = subtitleLabel->frame().x();
    place(*subtitleLabel, dateX,
          std::max(0.0, std::min(textEnd - dateX, subtitleWidthLayoutConstraint->constant())));

    const double badgeWidth = sumBackgroundWidthLayoutConstraint->constant();
    const double sumWidth = sumWidthLayoutConstraint->constant();
    const double badgeX = rowWidth - badgeWidth;
    place(*sumBackgroundView, badgeX, badgeWidth);
    sumBackgroundBox->setFrame(sumBackgroundView->bounds());
    place(*sumLabel, badgeX + (badgeWidth - sumWidth) / 2, sumWidth);
}

void TodayTableCellView::setExpanded(bool expanded) {
    if (isExpandedState_ == expanded)
        return;
    isExpandedState_ = expanded;
    setButtonsTakePresses(expanded);
    notifyExpandedChanged();
}

// Buttons that a closing row still shows would act on the transaction of the row that was opened instead.
void TodayTableCellView::setButtonsTakePresses(bool take) {
    if (!take && rightButtonsPanel->isAncestorOf(window()->focusWidget()))
        setFocus(Qt::TabFocusReason); // that is how the keyboard came to the button
    rightButtonsPanel->setEnabled(take);
}

void TodayTableCellView::cellClicked() {
    setExpanded(!isExpandedState_);
    if (!isExpandedState_) {
        close();
        return;
    }
    platform::AnimationGroup slide(slideDuration);
    slide.moveConstant(*cellContentViewRightSpaceConstraint, -widthConstraint->constant());
    slide.end();
    // The texts that the buttons will cover are hidden when the slide starts. When the row closes, they are
    // shown after the slide.
    setCurrentStateExpanded();
    if (const auto receiver = delegate)
        receiver->todayTableViewCellWillExpanded(*this);
}

void TodayTableCellView::collapseCell() {
    if (!isExpandedState_)
        return;
    setExpanded(false);
    close();
}

void TodayTableCellView::close() {
    platform::AnimationGroup slide(slideDuration);
    slide.setCompletionHandler([this, self = weak_from_this().lock()] { setCurrentStateExpanded(); });
    slide.moveConstant(*cellContentViewRightSpaceConstraint, 0);
    slide.end();
}

// This uses the current state: a row that was opened again while it closed is open.
void TodayTableCellView::setCurrentStateExpanded() {
    const std::array<platform::View*, 3> texts{&*titleLabel, &*subtitleLabel, &*transactionTypeImageView};
    // The row's width is that of the closed content. The content of a row that is opened again while it
    // closes is narrower.
    const double limit = bounds().width() - widthConstraint->constant();
    for (platform::View* view : texts)
        view->setHidden(isExpandedState_ && !(view->frame().right() < limit));
    sumBackgroundView->setHidden(isExpandedState_);
    sumLabel->setHidden(isExpandedState_);
}

void TodayTableCellView::mouseDown(const platform::MouseEvent&) {
    cellContentView->setAlphaValue(clickedAlpha);
}

// The position of the release does not matter, on purpose: a press that is dragged off the row toggles it
// too.
void TodayTableCellView::mouseUp(const platform::MouseEvent&) {
    cellContentView->setAlphaValue(1);
    cellClicked();
}

void TodayTableCellView::mouseCancelled() {
    cellContentView->setAlphaValue(1);
}

platform::View* TodayTableCellView::hitTest(QPointF point) {
    platform::View* hit = View::hitTest(point);
    platform::View* holder = hit ? hit->superview() : nullptr;
    return holder == cellContentView.get() ? cellContentView.get() : hit;
}

platform::View* TodayTableCellView::clickTarget() {
    return this;
}

void TodayTableCellView::buttonsPanelUserClickAction(TodayTransactionAction action) {
    const auto self = weak_from_this().lock();
    if (const auto receiver = delegate)
        receiver->todayTableViewCellClickedAction(action);
    // After Paid and Info the row stays open, on purpose: the controller removes it or leaves it. Otherwise
    // it runs its closing animation even if it is closed.
    if (!action.isLater() && !action.isDelete())
        return;
    setExpanded(false);
    close();
}

platform::AccessibleTraits TodayTableCellView::accessibleTraits() const {
    platform::AccessibleTraits traits;
    traits.role = QAccessible::ListItem;
    if (item) {
        traits.name = item->name + QStringLiteral(", ") + item->amount;
        traits.description = dateText(*item);
        if (item->isOverdue())
            traits.description += QStringLiteral(", ") + qtTrId("OverdueDescription");
        if (isExpandedState_)
            traits.description += QStringLiteral(", ") + qtTrId("OpenRowDescription");
    }
    traits.isExpanded = isExpandedState_;
    traits.actions = {QAccessibleActionInterface::toggleAction(), QAccessibleActionInterface::pressAction()};
    return traits;
}

void TodayTableCellView::performAccessibleAction(const QString&) {
    cellClicked();
}

void TodayTableCellView::paintEvent(QPaintEvent*) {
    if (!showsFocus() && !showsHover())
        return;
    QPainter painter(this);
    if (showsHover())
        paintHover(painter, QRectF(rect()).adjusted(0, 1, 0, -2));
    if (!showsFocus())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(focusColor, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 1.5, -0.5, -2.5), badgeCornerRadius,
                            badgeCornerRadius);
}

void TodayTableCellView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space && event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return View::keyPressEvent(event);
    if (!event->isAutoRepeat())
        cellClicked();
}

// How a row opens and closes, and where its clicks go.
#include "views/rows/TodayTableCellView.h"

#include "platform/views/AnimationGroup.h"

#include <QKeyEvent>

#include <array>

using namespace std::chrono_literals;

namespace {

constexpr auto slideDuration = 200ms;

} // namespace

void TodayTableCellView::setExpanded(bool expanded) {
    if (isExpandedState_ == expanded)
        return;
    isExpandedState_ = expanded;
    notifyExpandedChanged();
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
    // What the buttons would cover goes as the slide starts; a closing row's comes back when its slide has
    // ended.
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

// Goes by the state of this moment, not of the moment when it was asked for: a row that was opened again
// while it closed is open.
void TodayTableCellView::setCurrentStateExpanded() {
    const std::array<platform::View*, 3> texts{&*titleLabel, &*subtitleLabel, &*transactionTypeImageView};
    const double limit = cellContentView->frame().width() - widthConstraint->constant();
    for (platform::View* view : texts)
        view->setHidden(isExpandedState_ && !(view->frame().right() < limit));
    sumBackgroundView->setHidden(isExpandedState_);
    sumLabel->setHidden(isExpandedState_);
}

void TodayTableCellView::mouseDown(const platform::MouseEvent&) {
    cellContentView->setAlphaValue(clickedAlpha);
}

// Where the mouse is released is not asked, on purpose: a press that is dragged off the row toggles it too.
void TodayTableCellView::mouseUp(const platform::MouseEvent&) {
    cellContentView->setAlphaValue(1);
    cellClicked();
}

platform::View* TodayTableCellView::hitTest(QPointF point) {
    platform::View* hit = View::hitTest(point);
    platform::View* holder = hit ? hit->superview() : nullptr;
    return holder == cellContentView.get() ? cellContentView.get() : hit;
}

void TodayTableCellView::buttonsPanelUserClickAction(TodayTransactionAction action) {
    const auto self = weak_from_this().lock();
    if (const auto receiver = delegate)
        receiver->todayTableViewCellClickedAction(action);
    // After Paid and Info the row stays open, on purpose: the controller says what becomes of it. Otherwise
    // it closes, also where it is closed already.
    if (!action.isLater() && !action.isDelete())
        return;
    setExpanded(false);
    close();
}

void TodayTableCellView::performAccessibleAction(const QString&) {
    cellClicked();
}

void TodayTableCellView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space && event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return View::keyPressEvent(event);
    if (!event->isAutoRepeat())
        cellClicked();
}

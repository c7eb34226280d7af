// The user's actions in the widget.
#include "controller/TodayViewController.h"

#include "exchange/TodayWidgetLogic.h"
#include "platform/system/Fatal.h"
#include "platform/system/MainQueue.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr auto refreshDelay = 300ms;
constexpr double sheetTopMargin = 10;

// The action of an answer to the action sheet. An index other than 1 and 2 counts as the third choice. Absent
// if the action has no sheet.
std::optional<TodayTransactionAction> chosenAction(TodayTransactionAction asked, std::int64_t index) {
    if (asked.isLater())
        return TodayTransactionAction::Later(index == 1 ? 1 : index == 2 ? 3 : 7);
    if (asked.isDelete())
        return TodayTransactionAction::Delete(index == 1);
    return std::nullopt;
}

} // namespace

platform::ExtensionContext* TodayViewController::requiredContext() const {
    platform::require(extensionContext() != nullptr);
    return extensionContext().get();
}

void TodayViewController::todayTableViewCellWillExpanded(TodayTableCellView& cell) {
    if (lastExpandedCell.get() == &cell)
        return;
    if (lastExpandedCell)
        lastExpandedCell->collapseCell();
    lastExpandedCell = std::static_pointer_cast<TodayTableCellView>(cell.shared_from_this());
    currentTransaction = cell.item;
}

void TodayViewController::todayTableViewCellClickedAction(TodayTransactionAction action) {
    const TodayTransactionPtr transaction = currentTransaction;
    if (!transaction)
        return;
    const bool asks = action.isLater() || (action.isDelete() && !transaction->isSinglePlan);
    if (asks) {
        showActionSheet(action);
        return;
    }
    TodayWidgetLogic::performTransactionAction(*transaction, action, requiredContext());
    if (!action.isInfo())
        removeTransactionFromArrayAndFromTable(transaction);
}

void TodayViewController::showActionSheet(TodayTransactionAction action) {
    currentAction = action;
    if (!mainTableView->isHidden())
        listInSight_ = view().exposedRect();
    mainTableView->setHidden(true);
    const QString title = currentTransaction->name + QStringLiteral(": ") + currentTransaction->amount;
    if (actionSheet)
        actionSheet->removeFromSuperview();
    actionSheet = TodayActionSheetView::createNewActionSheet();
    const double oldHeight = view().bounds().height();
    platform::require(actionSheet != nullptr);
    view().addSubview(*actionSheet);
    if (action.isLater())
        actionSheet->showWithTitle(title, sharedSelf(), qtTrId("ResheduleTomorrow"), qtTrId("Reshedule3Days"),
                                   qtTrId("ResheduleNextWeek"));
    else
        actionSheet->showWithTitle(title, sharedSelf(), qtTrId("DeleteFutureEnteres"),
                                   qtTrId("DeleteCurrentPlanButtonTitle"), std::nullopt);
    configureWidgetHeight();
    const double newHeight = preferredContentSize().height();
    const double y = oldHeight - newHeight + sheetTopMargin;
    actionSheet->setUnflippedFrame(QRectF(0, y, view().bounds().width(), newHeight), oldHeight);
    actionSheet->scrollRectToVisible(actionSheet->bounds());
}

void TodayViewController::actionSheetClickedButtonAtIndex(std::int64_t index) {
    if (!currentAction || !currentTransaction)
        return;
    if (index != 0) {
        if (const auto action = chosenAction(*currentAction, index))
            TodayWidgetLogic::performTransactionAction(*currentTransaction, *action, requiredContext());
        loadData();
    }
    hideActionSheet();
}

void TodayViewController::hideActionSheet() {
    mainTableView->setHidden(false);
    if (actionSheet)
        actionSheet->removeFromSuperview();
    actionSheet = nullptr;
    currentAction = std::nullopt;
    reloadData();
    view().scrollRectToVisible(listInSight_);
}

// The indexes are not calculated again before the refresh, on purpose: the second of two quick removals uses
// the indexes from before the first one. lastExpandedCell and currentTransaction are kept.
void TodayViewController::removeTransactionFromArrayAndFromTable(const TodayTransactionPtr& transaction) {
    mainTableView->beginUpdates();
    const std::int64_t index = transaction->index;
    platform::require(index >= 0 && index < static_cast<std::int64_t>(transactionsArray.size()));
    transactionsArray.erase(transactionsArray.begin() + index);
    if (static_cast<std::int64_t>(cellArray.size()) > index)
        cellArray.erase(cellArray.begin() + index);
    mainTableView->removeRow(index, platform::RowAnimation::Fade);
    if (trCount.isCustom() && static_cast<std::int64_t>(transactionsArray.size()) > trCount.value() - 1)
        mainTableView->insertRow(trCount.value() - 1, platform::RowAnimation::SlideDown);
    mainTableView->endUpdates();
    platform::MainQueue::current().after(refreshDelay, [self = sharedSelf(), this] { reloadData(); });
}

void TodayViewController::todayAddTableViewCellClickAddButton() {
    TodayWidgetLogic::performNewTransaction(requiredContext());
}

// The number of transactions does not matter, on purpose: the host application opens even if the last row has
// no text.
void TodayViewController::todayAddTableViewCellClickContentCell() {
    if (trCount.isCustom())
        TodayWidgetLogic::performAllTransactions(requiredContext());
}

void TodayViewController::showAllTransactions(std::int64_t) {
    trCount = TodayTransactionsCount::All();
    mainTableView->reloadData();
    configureWidgetHeight();
}

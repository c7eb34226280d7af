#pragma once

#include "model/TodayTransaction.h"
#include "model/TodayTransactionAction.h"
#include "model/TodayTransactionsCount.h"
#include "platform/extension/ViewController.h"
#include "platform/extension/WidgetProviding.h"
#include "platform/views/Outlet.h"
#include "platform/views/TableView.h"
#include "views/controls/TodayActionSheetView.h"
#include "views/rows/TodayAddTableCellView.h"
#include "views/rows/TodayTableCellView.h"

#include <QRectF>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

// The controller of the widget. It reads the list of transactions, makes a row for each of them, sets the
// height that the rows need, and performs the actions of the user by TodayWidgetLogic.
//
// transactionsArray and cellArray have the same length, and cellArray[i] shows transactionsArray[i]. The
// rows, the action sheet and the controller own each other, so the panel calls releaseViews when it replaces
// a controller.
//
// Main thread only.
class TodayViewController final : public platform::ViewController,
                                  public platform::WidgetProviding,
                                  public platform::TableViewDataSource,
                                  public platform::TableViewDelegate,
                                  public TodayTableViewCellDelegate,
                                  public TodayActionSheetViewDelegate,
                                  public TodayAddTableViewCellDelegate {
public:
    TodayViewController();
    ~TodayViewController() override;

    const QString sharedDataGroup; // the shared settings that an update tries to open
    const double cellHeight = 50;  // of each row, points
    const QString tableViewTransactionReuseIdentifier = QStringLiteral("transactionCell");
    const QString tableViewAddReuseIdentifier = QStringLiteral("addCell");
    std::vector<TodayTransactionPtr> transactionsArray;
    std::shared_ptr<TodayTableCellView> lastExpandedCell; // the row that was opened last
    std::shared_ptr<TodayActionSheetView> actionSheet;    // null unless it is shown
    double maxSumLength = 50;                             // the width of the amounts, points
    TodayTransactionPtr currentTransaction;               // that of the row opened last
    std::optional<TodayTransactionAction> currentAction;  // the one that the action sheet asks about
    TodayTransactionsCount trCount = TodayTransactionsCount::Custom(3);
    std::vector<std::shared_ptr<TodayTableCellView>> cellArray;
    platform::Outlet<platform::TableView> mainTableView;

    [[nodiscard]] QString nibName() const override { return QStringLiteral("TodayViewController"); }

    // --- update cycle (TodayViewController.cpp)

    void viewDidLoad() override;
    // Answers NewData if the shared settings can be opened and Failed otherwise. It does not read the feed,
    // on purpose.
    void widgetPerformUpdateWithCompletionHandler(const UpdateHandler& completionHandler) override;
    // Reads the feed and makes a row for each transaction, including those beyond the shown count.
    void loadData();
    void reloadData();
    // Releases the rows and the action sheet and disconnects the table, so that nothing owns the controller.
    void releaseViews();

    // --- rows and sizing (TodayViewControllerRows.cpp)

    std::int64_t numberOfRowsInTableView(platform::TableView& table) override;
    std::shared_ptr<platform::View> tableViewViewForTableColumnRow(platform::TableView& table,
                                                                   std::int64_t column,
                                                                   std::int64_t row) override;
    double tableViewHeightOfRow(platform::TableView& table, std::int64_t row) override;
    void calcMaxWidth();
    void calcIndexes();
    void configureWidgetHeight();

    // --- the user's actions (TodayViewControllerActions.cpp)

    void todayTableViewCellWillExpanded(TodayTableCellView& cell) override;
    void todayTableViewCellClickedAction(TodayTransactionAction action) override;
    void actionSheetClickedButtonAtIndex(std::int64_t index) override;
    void todayAddTableViewCellClickAddButton() override;
    void todayAddTableViewCellClickContentCell() override;
    // Shows all transactions until the next view load. The argument is ignored. The widget itself never calls
    // it.
    void showAllTransactions(std::int64_t sender);
    void removeTransactionFromArrayAndFromTable(const TodayTransactionPtr& transaction);

protected:
    void connectOutlets(platform::View& view) override;

private:
    [[nodiscard]] std::int64_t shownCount() const;
    [[nodiscard]] QString lastRowTitle() const;
    [[nodiscard]] std::shared_ptr<TodayViewController> sharedSelf();
    [[nodiscard]] platform::ExtensionContext* requiredContext() const;
    void showActionSheet(TodayTransactionAction action);
    void hideActionSheet();

    QRectF listInSight_; // the part of the list that was in sight before the action sheet
};

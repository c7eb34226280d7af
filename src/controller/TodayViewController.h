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

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

// The widget's principal controller and the entry of the whole: it reads the list, keeps a prepared row for
// every transaction, asks for the height that they need, and turns what the user does into calls of
// TodayWidgetLogic.
//
// transactionsArray and cellArray have the same length, and cellArray[i] was configured for
// transactionsArray[i]. Rows and sheet refer to the controller and it to them: whoever ends a view load calls
// releaseViews, which breaks the cycles.
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

    const QString sharedDataGroup; // the suite whose availability the update answer tests
    const double cellHeight = 50;  // every row, points
    const QString tableViewTransactionReuseIdentifier = QStringLiteral("transactionCell");
    const QString tableViewAddReuseIdentifier = QStringLiteral("addCell");
    std::vector<TodayTransactionPtr> transactionsArray;
    std::shared_ptr<TodayTableCellView> lastExpandedCell; // the row whose buttons are shown
    std::shared_ptr<TodayActionSheetView> actionSheet;    // while it is on screen
    double maxSumLength = 50;                             // common width of the amounts, points
    TodayTransactionPtr currentTransaction;               // what an open sheet is about
    std::optional<TodayTransactionAction> currentAction;  // likewise
    TodayTransactionsCount trCount = TodayTransactionsCount::Custom(3);
    std::vector<std::shared_ptr<TodayTableCellView>> cellArray;
    platform::Outlet<platform::TableView> mainTableView;

    [[nodiscard]] QString nibName() const override { return QStringLiteral("TodayViewController"); }

    // --- update cycle (TodayViewController.cpp)

    void viewDidLoad() override;
    // Tests only whether the shared settings can be opened: NewData, or Failed. Reads nothing and changes
    // nothing, on purpose.
    void widgetPerformUpdateWithCompletionHandler(const UpdateHandler& completionHandler) override;
    // Reads the feed anew and makes all rows, also those beyond the shown count.
    void loadData();
    void reloadData();
    // Lets go of rows, sheet and table, so that nothing keeps the controller alive.
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

    // --- what the user does (TodayViewControllerActions.cpp)

    void todayTableViewCellWillExpanded(TodayTableCellView& cell) override;
    void todayTableViewCellClickedAction(TodayTransactionAction action) override;
    void actionSheetClickedButtonAtIndex(std::int64_t index) override;
    void todayAddTableViewCellClickAddButton() override;
    void todayAddTableViewCellClickContentCell() override;
    // Shows all transactions until the next view load. Nothing of ours calls it; the argument is ignored.
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
};

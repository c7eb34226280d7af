#include "controller/TodayViewController.h"

#include "exchange/TodayWidgetLogic.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/SharedDefaults.h"
#include "platform/system/Fatal.h"
#include "platform/views/InterfaceFile.h"

#include <string>
#include <utility>

namespace {

// Registers an interface file with the table. A missing file is fatal.
void registerNib(platform::TableView& table, const QString& name, const QString& identifier) {
    const auto file = platform::InterfaceFile::named(name);
    platform::require(file.has_value());
    table.registerNib([nib = *file] { return nib.instantiate(); }, identifier);
}

} // namespace

TodayViewController::TodayViewController()
    : sharedDataGroup(
          QString::fromUtf8(freeEditionGroupIdentifier.data(), freeEditionGroupIdentifier.size())) {}

TodayViewController::~TodayViewController() {
    releaseViews();
}

void TodayViewController::connectOutlets(platform::View& view) {
    mainTableView = view.findChild<platform::TableView*>(QStringLiteral("mainTableView"));
}

void TodayViewController::viewDidLoad() {
    ViewController::viewDidLoad();
    registerNib(*mainTableView, QStringLiteral("TodayTableCellView"), tableViewTransactionReuseIdentifier);
    registerNib(*mainTableView, QStringLiteral("TodayAddTableCellView"), tableViewAddReuseIdentifier);
    mainTableView->setDataSource(this);
    mainTableView->setDelegate(this);
    currentTransaction = nullptr;
    trCount = TodayWidgetLogic::getTransactionsCountToShow();
    mainTableView->setBackgroundColor(Qt::transparent);
    loadData();
}

void TodayViewController::widgetPerformUpdateWithCompletionHandler(const UpdateHandler& completionHandler) {
    platform::require(completionHandler != nullptr);
    const bool opens = platform::SharedDefaults::open(sharedDataGroup.toStdString()).has_value();
    completionHandler(opens ? platform::UpdateResult::NewData : platform::UpdateResult::Failed);
}

void TodayViewController::loadData() {
    currentTransaction = nullptr;
    lastExpandedCell = nullptr;
    currentAction = std::nullopt;
    if (trCount.isNone()) {
        transactionsArray.clear();
    } else {
        transactionsArray = TodayWidgetLogic::getTodayTransactionsArray();
        calcMaxWidth();
    }
    cellArray.clear();
    cellArray.reserve(transactionsArray.size());
    for (const TodayTransactionPtr& transaction : transactionsArray) {
        const auto row = std::dynamic_pointer_cast<TodayTableCellView>(
            mainTableView->makeViewWithIdentifier(tableViewTransactionReuseIdentifier));
        platform::require(row != nullptr);
        row->configureForItem(transaction, maxSumLength);
        row->delegate = sharedSelf();
        cellArray.push_back(row);
    }
    reloadData();
}

void TodayViewController::reloadData() {
    calcIndexes();
    configureWidgetHeight();
    mainTableView->reloadData();
}

void TodayViewController::releaseViews() {
    if (auto* table = mainTableView.get()) {
        table->setDataSource(nullptr);
        table->setDelegate(nullptr);
        table->reloadData();
    }
    for (const auto& row : std::exchange(cellArray, {}))
        row->delegate = nullptr;
    if (const auto row = std::exchange(lastExpandedCell, nullptr))
        row->delegate = nullptr;
    if (const auto sheet = std::exchange(actionSheet, nullptr)) {
        sheet->delegate = nullptr;
        sheet->removeFromSuperview();
    }
}

// The delegate of the rows and of the action sheet. Null while the controller is constructed or destroyed.
std::shared_ptr<TodayViewController> TodayViewController::sharedSelf() {
    return std::static_pointer_cast<TodayViewController>(weak_from_this().lock());
}

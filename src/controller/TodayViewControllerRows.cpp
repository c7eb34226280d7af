// The rows of the table and the height of the widget.
#include "controller/TodayViewController.h"

#include "platform/system/Fatal.h"
#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"

#include <algorithm>
#include <limits>

namespace {

constexpr double amountSize = 16;
constexpr double narrowestAmount = 50;
constexpr double widestAmount = 105;

} // namespace

std::int64_t TodayViewController::shownCount() const {
    return trCount.shownOutOf(static_cast<std::int64_t>(transactionsArray.size()));
}

std::int64_t TodayViewController::numberOfRowsInTableView(platform::TableView&) {
    return shownCount() + 1;
}

std::shared_ptr<platform::View>
TodayViewController::tableViewViewForTableColumnRow(platform::TableView& table, std::int64_t,
                                                    std::int64_t row) {
    if (row < shownCount()) {
        platform::require(row >= 0 && row < static_cast<std::int64_t>(cellArray.size()));
        return cellArray[static_cast<std::size_t>(row)];
    }
    const auto addRow = std::dynamic_pointer_cast<TodayAddTableCellView>(
        table.makeViewWithIdentifier(tableViewAddReuseIdentifier));
    platform::require(addRow != nullptr);
    addRow->titleLabel->setStringValue(lastRowTitle());
    // Assistive programs name the effect of a click even if the row has no text.
    if (trCount.isCustom())
        addRow->setAccessibleName(qtTrId("ShowAllTitle"));
    addRow->contentIsClickable = trCount.isCustom();
    addRow->delegate = sharedSelf();
    return addRow;
}

// The text of the empty list is not shown for a count of None, on purpose.
QString TodayViewController::lastRowTitle() const {
    const auto count = static_cast<std::int64_t>(transactionsArray.size());
    if (trCount.isNone())
        return {};
    if (trCount.isCustom()) {
        // The row has no text for 1 to limit transactions. A limit that is not the end of a range is fatal.
        const std::int64_t limit = trCount.value();
        platform::require(limit >= 1 && limit < std::numeric_limits<std::int64_t>::max());
        if (count > limit)
            return qtTrId("ShowAllTitle");
    }
    return count == 0 ? qtTrId("TodayViewEmtyText") : QString();
}

double TodayViewController::tableViewHeightOfRow(platform::TableView&, std::int64_t) {
    return cellHeight;
}

void TodayViewController::calcMaxWidth() {
    const QFont font = platform::boldSystemFont(amountSize);
    maxSumLength = narrowestAmount;
    for (const TodayTransactionPtr& transaction : transactionsArray)
        maxSumLength = std::max(maxSumLength, platform::textWidth(transaction->amount, font));
    maxSumLength = std::min(maxSumLength, widestAmount);
}

void TodayViewController::calcIndexes() {
    for (std::size_t i = 0; i < transactionsArray.size(); ++i)
        transactionsArray[i]->index = static_cast<std::int64_t>(i);
}

void TodayViewController::configureWidgetHeight() {
    double height = cellHeight * static_cast<double>(shownCount() + 1);
    if (mainTableView->isHidden()) {
        platform::require(actionSheet != nullptr);
        height = std::max(actionSheet->contentHeight(), height);
    }
    setPreferredContentSize(QSizeF(preferredContentSize().width(), height));
}

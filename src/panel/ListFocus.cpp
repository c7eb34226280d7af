#include "panel/ListFocus.h"

#include "controller/TodayViewController.h"

#include <algorithm>

namespace panel {

namespace {

bool holds(const QWidget& view, const QWidget* widget) {
    return widget && (widget == &view || view.isAncestorOf(widget));
}

bool isSameOccurrence(const TodayTransaction& one, const TodayTransaction& other) {
    return one.planPrimaryKey == other.planPrimaryKey && one.date == other.date;
}

// With the reason of a key, so that the view goes on showing that it has the keyboard.
void focus(QWidget& view) {
    view.setFocus(Qt::TabFocusReason);
}

} // namespace

ListFocus::ListFocus(const TodayViewController& controller, const QWidget* focused) {
    const auto row =
        std::ranges::find_if(controller.cellArray, [&](const auto& cell) { return holds(*cell, focused); });
    if (row != controller.cellArray.end()) {
        place_ = Place::Row;
        row_ = static_cast<std::size_t>(row - controller.cellArray.begin());
        transaction_ = (*row)->item;
        return;
    }
    const auto* lastRow = controller.mainTableView->findChild<TodayAddTableCellView*>();
    if (lastRow && holds(*lastRow, focused))
        place_ = focused == lastRow ? Place::LastRow : Place::AddButton;
}

void ListFocus::giveTo(TodayViewController& controller) const {
    if (place_ == Place::Nowhere)
        return;
    if (place_ == Place::Row) {
        const auto& rows = controller.cellArray;
        const auto same = std::ranges::find_if(
            rows, [this](const auto& row) { return isSameOccurrence(*row->item, *transaction_); });
        const auto row = same == rows.end() ? row_ : static_cast<std::size_t>(same - rows.begin());
        if (row < rows.size() && rows[row]->superview()) // it is in sight
            return focus(*rows[row]);
    }
    if (auto* lastRow = controller.mainTableView->findChild<TodayAddTableCellView*>())
        focus(place_ == Place::AddButton ? static_cast<QWidget&>(*lastRow->addButton) : *lastRow);
}

} // namespace panel

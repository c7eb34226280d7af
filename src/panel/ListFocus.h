#pragma once

#include "model/TodayTransaction.h"

#include <cstddef>

class QWidget;
class TodayViewController;

namespace panel {

// Where in a list the keyboard is, in words that hold for a list that is loaded anew.
class ListFocus final {
public:
    // The place of a widget in the controller's list; nowhere, if it is none of its rows nor in one.
    ListFocus(const TodayViewController& controller, const QWidget* focused);

    // Gives the keyboard to the same transaction's row, to the row at its place if it is gone, or to the last
    // row if there is no such row in sight. Nothing happens if the keyboard was nowhere in the list.
    void giveTo(TodayViewController& controller) const;

private:
    enum class Place { Nowhere, Row, LastRow, AddButton };

    Place place_ = Place::Nowhere;
    std::size_t row_ = 0;
    TodayTransactionPtr transaction_;
};

} // namespace panel

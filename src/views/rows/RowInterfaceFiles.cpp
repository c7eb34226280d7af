#include "views/rows/RowInterfaceFiles.h"

#include "platform/views/InterfaceFile.h"
#include "ui_TodayAddTableCellView.h"
#include "ui_TodayTableCellView.h"

using platform::InterfaceFile;
using platform::LayoutConstraint;

namespace {

// Makes a constraint of a row. The frames of the interface file give its constant.
LayoutConstraint* constraint(TodayTableCellView& row, double constant) {
    auto* made = new LayoutConstraint(constant, &row);
    made->setChanged([&row] { row.layoutViews(); });
    return made;
}

InterfaceFile::TopLevelObjects makeTransactionRow() {
    auto row = platform::makeView<TodayTableCellView>();
    Ui::TodayTableCellView ui;
    ui.setupUi(row.get());
    row->cellContentView = ui.cellContentView;
    row->transactionImageView = ui.transactionImageView;
    row->titleLabel = ui.titleLabel;
    row->subtitleLabel = ui.subtitleLabel;
    row->sumBackgroundView = ui.sumBackgroundView;
    row->sumBackgroundBox = ui.sumBackgroundBox;
    row->transactionTypeImageView = ui.transactionTypeImageView;
    row->sumLabel = ui.sumLabel;
    row->rightButtonsPanel = ui.rightButtonsPanel;
    ui.subtitleLabel->setLineBreakMode(platform::Label::LineBreakMode::TruncatingTail);

    const double titleEnd = ui.titleLabel->frame().right();
    row->titleRightSpaceLayoutConstraint = constraint(*row, row->bounds().width() - titleEnd);
    row->widthConstraint = constraint(*row, ui.rightButtonsPanel->frame().width());
    row->cellContentViewRightSpaceConstraint = constraint(*row, 0);
    row->subtitleWidthLayoutConstraint = constraint(*row, ui.subtitleLabel->frame().width());
    row->sumWidthLayoutConstraint = constraint(*row, ui.sumLabel->frame().width());
    row->sumBackgroundWidthLayoutConstraint = constraint(*row, ui.sumBackgroundView->frame().width());
    row->awakeFromNib();
    return {row};
}

InterfaceFile::TopLevelObjects makeAddRow() {
    auto row = platform::makeView<TodayAddTableCellView>();
    Ui::TodayAddTableCellView ui;
    ui.setupUi(row.get());
    row->addButton = ui.addButton;
    row->titleLabel = ui.titleLabel;
    row->clickView = ui.clickView;
    ui.addButton->setAction([row = row.get()] { row->addButtonClick(); });
    row->awakeFromNib();
    return {row};
}

} // namespace

void rows::registerRowInterfaceFiles() {
    static const bool once = [] {
        InterfaceFile::add(QStringLiteral("TodayTableCellView"), makeTransactionRow);
        InterfaceFile::add(QStringLiteral("TodayAddTableCellView"), makeAddRow);
        return true;
    }();
    (void)once;
}

#include "views/controls/ActionSheetInterfaceFile.h"

#include "platform/views/Fonts.h"
#include "platform/views/InterfaceFile.h"
#include "ui_TodayActionSheetView.h"

#include <memory>

using platform::InterfaceFile;

namespace {

constexpr double titleSize = 14;

InterfaceFile::TopLevelObjects makeActionSheet() {
    auto sheet = platform::makeView<TodayActionSheetView>();
    Ui::TodayActionSheetView ui;
    ui.setupUi(sheet.get());
    sheet->titleBackgroundView = ui.titleBackgroundView;
    sheet->titleLabel = ui.titleLabel;
    sheet->checkButton1 = ui.checkButton1;
    sheet->checkButton2 = ui.checkButton2;
    sheet->checkButton3 = ui.checkButton3;
    sheet->theCancelButton = ui.theCancelButton;

    ui.titleLabel->setLabelFont(platform::boldSystemFont(titleSize));
    ui.titleLabel->setLineBreakMode(platform::Label::LineBreakMode::TruncatingTail);

    auto* constraint = new platform::LayoutConstraint(ui.theCancelButton->frame().y(), sheet.get());
    constraint->setChanged([sheet = sheet.get()] { sheet->layoutViews(); });
    sheet->verticalConstraintCancel = constraint;

    for (platform::Button* button : {ui.checkButton1, ui.checkButton2, ui.checkButton3, ui.theCancelButton})
        button->setCell(std::make_shared<TodayTintButtonCell>());
    ui.checkButton1->setAction([sheet = sheet.get()] { sheet->checkButtonClick1(); });
    ui.checkButton2->setAction([sheet = sheet.get()] { sheet->checkButtonClick2(); });
    ui.checkButton3->setAction([sheet = sheet.get()] { sheet->checkButtonClick3(); });
    ui.theCancelButton->setAction([sheet = sheet.get()] { sheet->cancelButtonClick(); });
    sheet->awakeFromNib();
    return {sheet};
}

} // namespace

void controls::registerActionSheetInterfaceFile() {
    static const bool once = [] {
        InterfaceFile::add(QStringLiteral("TodayActionSheetView"), makeActionSheet);
        return true;
    }();
    (void)once;
}

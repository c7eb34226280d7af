#include "controller/WidgetInterfaceFiles.h"

#include "platform/views/InterfaceFile.h"
#include "platform/views/TableView.h"
#include "ui_TodayViewController.h"
#include "views/controls/ActionSheetInterfaceFile.h"
#include "views/rows/RowInterfaceFiles.h"

using platform::InterfaceFile;

namespace {

constexpr QColor separatorColor(255, 255, 255, 31);
constexpr double separatorIndent = 50; // where the titles start

InterfaceFile::TopLevelObjects makeControllerView() {
    auto view = platform::makeView<platform::View>();
    Ui::TodayViewController ui;
    ui.setupUi(view.get());
    ui.mainTableView->setFillsSuperview(true);
    ui.mainTableView->setSeparator(separatorColor, separatorIndent);
    return {view};
}

} // namespace

void controller::registerWidgetInterfaceFiles() {
    static const bool once = [] {
        controls::registerActionSheetInterfaceFile();
        rows::registerRowInterfaceFiles();
        InterfaceFile::add(QStringLiteral("TodayViewController"), makeControllerView);
        return true;
    }();
    (void)once;
}

#include "controller/InterfaceFiles.h"

#include "platform/views/InterfaceFile.h"
#include "platform/views/TableView.h"
#include "ui_TodayViewController.h"
#include "views/controls/InterfaceFiles.h"
#include "views/rows/InterfaceFiles.h"

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

void controller::registerInterfaceFiles() {
    static const bool once = [] {
        controls::registerInterfaceFiles();
        rows::registerInterfaceFiles();
        InterfaceFile::add(QStringLiteral("TodayViewController"), makeControllerView);
        return true;
    }();
    (void)once;
}

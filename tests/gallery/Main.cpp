// Draws the panel, or the window that stands in for it, in one state into a PNG file, for docs/gallery:
// scripts/gallery calls it once a picture.
#include "center/FailureWindow.h"
#include "panel/Panel.h"
#include "panel/Snapshot.h"
#include "panel/Welcome.h"
#include "platform/storage/GroupContainers.h"
#include "resources/Language.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"

#include <QApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QPalette>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace std::chrono_literals;

namespace {

struct Scene {
    // rest, all, pressed, open, later, delete or chosen; sources, source-reading or source-fault;
    // failure, failure-dark or findings
    std::string state;
    std::size_t row = 0;
};

// Brings the widget into a state as a user would, with all animations at their end.
void arrange(TodayViewController& controller, support::ManualMainQueue& queue, const Scene& scene) {
    if (scene.state == "rest")
        return;
    if (scene.state == "all")
        return controller.showAllTransactions(0);
    TodayTableCellView& row = *controller.cellArray.at(scene.row);
    if (scene.state == "pressed")
        return row.mouseDown({});
    row.cellClicked();
    queue.advance(1s);
    if (scene.state == "later" || scene.state == "chosen")
        row.rightButtonsPanel->buttonLaterClick();
    else if (scene.state == "delete")
        row.rightButtonsPanel->buttonDeleteClick();
    queue.advance(1s);
    if (scene.state == "chosen") {
        controller.actionSheet->checkButtonClick2();
        queue.advance(400ms);
    }
}

// Nothing is there to raise a window from, and the toolkit says so.
bool drawFailure(const panel::Snapshot& snapshot, const std::string& state) {
    if (state == "failure-dark")
        QApplication::setPalette(QPalette(QColor(49, 52, 56), QColor(36, 38, 41))); // buttons, windows
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    center::FailureWindow window;
    window.open({});
    if (state == "findings") {
        const auto buttons = window.findChildren<QPushButton*>();
        for (QPushButton* button : buttons)
            if (button->text() == qtTrId("FailureExplain"))
                button->click();
        const auto* findings = window.findChild<QPlainTextEdit*>();
        while (findings->isHidden())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QApplication::processEvents();
    return window.grab().save(snapshot.file);
}

// Files that were found, as the first run offers them.
void offerSources(panel::Panel& panel, const std::string& state) {
    const QString home = QDir::homePath();
    const panel::Source sources[] = {
        {1, QStringLiteral("HomeBank"), home + QStringLiteral("/Documents/bills.xhb")},
        {2, QStringLiteral("KMyMoney"), home + QStringLiteral("/Documents/Household.kmy")},
        {3, QStringLiteral("hledger"), home + QStringLiteral("/.hledger.journal")},
    };
    for (const panel::Source& source : sources)
        panel.welcome()->offer(source);
    if (state == "sources")
        return;
    auto* row = panel.window().findChildren<panel::SourceRow*>().at(1);
    row->performAccessibleAction(QAccessibleActionInterface::pressAction());
    if (state == "source-fault")
        panel.welcome()->setFault(2, sources[1].path + QStringLiteral(" is encrypted."));
}

bool drawPanel(const panel::Snapshot& snapshot, const Scene& scene) {
    support::ManualMainQueue queue;
    panel::Panel panel(panel::Backdrop::RoundTranslucent, panel::Height::OfContent, snapshot.width);
    panel.load();
    if (scene.state.starts_with("source"))
        offerSources(panel, scene.state);
    else
        arrange(panel.controller(), queue, scene);
    return panel::writePicture(panel.window(), snapshot);
}

} // namespace

// CONTAINERS OUT.png SCALE LOCALE NOW STATE ROW
int main(int argc, char** argv) {
    if (argc != 8) {
        std::fputs("usage: korvel_gallery CONTAINERS OUT.png SCALE LOCALE NOW STATE ROW\n", stderr);
        return 2;
    }
    panel::Snapshot snapshot;
    snapshot.file = QString::fromLocal8Bit(argv[2]);
    snapshot.scale = std::strtod(argv[3], nullptr);
    snapshot.locale = argv[4];
    panel::prepareSnapshot(snapshot);
    int count = 1;
    QApplication application(count, argv);
    resources::installLanguage();
    platform::GroupContainers::setFolder(argv[1]);
    const support::ManualClock clock(std::strtod(argv[5], nullptr));
    const Scene scene{argv[6], static_cast<std::size_t>(std::atoi(argv[7]))};
    const bool isFailure = scene.state.starts_with("failure") || scene.state == "findings";
    return (isFailure ? drawFailure(snapshot, scene.state) : drawPanel(snapshot, scene)) ? 0 : 1;
}

// Draws the panel in one state into a PNG file, for docs/gallery: scripts/gallery calls it once a picture.
#include "panel/Panel.h"
#include "panel/Snapshot.h"
#include "platform/storage/GroupContainers.h"
#include "resources/Language.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace std::chrono_literals;

namespace {

struct Scene {
    std::string state; // rest, all, pressed, open, later, delete or chosen
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
    support::ManualMainQueue queue;

    panel::Panel panel(panel::Backdrop::RoundTranslucent, panel::Height::OfContent, snapshot.width);
    panel.load();
    arrange(panel.controller(), queue, {argv[6], static_cast<std::size_t>(std::atoi(argv[7]))});
    return panel::writePicture(panel.window(), snapshot) ? 0 : 1;
}

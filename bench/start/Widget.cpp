// The panel with the container of KORVEL_GROUP_CONTAINERS, from start to first frame.
#include "FirstFrame.h"

#include "panel/Panel.h"
#include "platform/views/Accessibility.h"
#include "resources/Language.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    resources::installLanguage();
    platform::installViewAccessibility();
    panel::Panel panel(panel::backdropOfDesktop(), panel::Height::OfScreen, 320);
    const bench::EndAfterFirstFrame end(panel.window());
    panel.open();
    return QApplication::exec();
}

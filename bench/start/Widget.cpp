// The panel with the container of KORVEL_GROUP_CONTAINERS, from start to first frame.
#include "FirstFrame.h"

#include "center/Language.h"
#include "center/Panel.h"
#include "platform/views/Accessibility.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    center::installLanguage();
    platform::installViewAccessibility();
    center::Panel panel(center::backdropOfDesktop(), center::Height::OfScreen, 320);
    const bench::EndAfterFirstFrame end(panel.window());
    panel.open();
    return QApplication::exec();
}

// What an action costs. Arguments: the folder of the feeds, a folder on a disk, a folder in memory; then, to
// run one part only, its name: files, launch, slide or stalls.
#include "Figures.h"
#include "Files.h"
#include "Launch.h"
#include "Slide.h"
#include "Stalls.h"
#include "resources/Language.h"

#include <QApplication>

#include <string>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_NO_GLIB", "1"); // Qt's own event loop tells when it waits
    qputenv("TZ", "UTC");
    if (argc < 4)
        fail("korvel_bench_actions FEEDS DISK MEMORY [files|launch|slide|stalls]");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    resources::installLanguage();
    const std::string part = argc > 4 ? argv[4] : "";
    if (part.empty() || part == "files")
        measureFiles(argv[1], argv[2], argv[3]);
    if (part.empty() || part == "launch")
        measureLaunch(argv[1], argv[2]);
    if (part.empty() || part == "slide")
        measureSlide(argv[1], argv[3]);
    if (part.empty() || part == "stalls")
        measureStalls(argv[1], argv[3]);
}

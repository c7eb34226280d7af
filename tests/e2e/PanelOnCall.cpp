// A panel for end-to-end tests that opens and closes as a test says: it reads lines from the named pipe that
// is its argument. "open" and "open hiding" (when the focus is lost) may be followed by a screen's name;
// "close" closes. It is confined as the program's own process with the panel is.

#include "exchange/LoadTriggers.h"
#include "panel/Backdrop.h"
#include "panel/Confinement.h"
#include "panel/Panel.h"
#include "platform/storage/InotifyWatcher.h"
#include "platform/system/TimerAlarm.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QStringList>

#include <array>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace {

void carryOut(panel::Panel& panel, QStringList words) {
    const QString verb = words.takeFirst();
    if (verb == QStringLiteral("close"))
        return panel.close();
    panel::Opening opening;
    opening.hidesOnFocusLoss = words.removeOne(QStringLiteral("hiding"));
    opening.screen = words.value(0);
    panel.open(opening);
}

} // namespace

int main(int argc, char** argv) {
    const int pipe =
        argc == 2 ? ::open(argv[1], O_RDWR | O_CLOEXEC) : -1; // a writer of its own: no end of file
    panel::Confinement confinement;
    if (pipe < 0 || confinement.begin(pipe))
        return 2;
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (panel::Confinement::forbidConnections())
        return 2;
    panel::Panel panel(panel::backdropOfDesktop(), panel::Height::OfScreen, 320,
                       std::make_unique<exchange::LoadTriggers>(std::make_unique<platform::InotifyWatcher>(),
                                                                std::make_unique<platform::TimerAlarm>()));
    panel.setBackdropOfDesktop(panel::backdropOfDesktop);
    QSocketNotifier notifier(pipe, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&] {
        std::array<char, 512> bytes; // a write of a line is one read
        const auto count = ::read(pipe, bytes.data(), bytes.size());
        const QString text = QString::fromUtf8(bytes.data(), count);
        for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            carryOut(panel, line.split(QLatin1Char(' ')));
    });
    return QApplication::exec();
}

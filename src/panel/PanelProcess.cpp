#include "panel/PanelProcess.h"

#include "panel/Backdrop.h"
#include "panel/Panel.h"
#include "platform/storage/InotifyWatcher.h"
#include "platform/system/DisplayConnection.h"
#include "platform/system/MainQueue.h"
#include "platform/system/TerminationSignals.h"
#include "platform/system/TimerAlarm.h"
#include "platform/views/Accessibility.h"

#include <QApplication>

#include <csignal>
#include <memory>

namespace panel {

namespace {

constexpr int defaultContentWidth = 320;

// Ends the program once nothing that the user has chosen is pending.
void quitWhenIdle() {
    platform::MainQueue& queue = platform::MainQueue::current();
    if (queue.isIdle())
        QApplication::quit();
    else
        queue.whenNextIdle([] { quitWhenIdle(); });
}

} // namespace

int showPanel() {
    // A file that grows beyond the process's limit is a write that fails, like one on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication::setQuitOnLastWindowClosed(false);
    platform::installViewAccessibility();
    platform::DisplayConnection::setBeforeEnd([] { platform::MainQueue::current().finish(); });
    Panel panel(backdropOfDesktop(), Height::OfScreen, defaultContentWidth,
                std::make_unique<LoadTriggers>(std::make_unique<platform::InotifyWatcher>(),
                                               std::make_unique<platform::TimerAlarm>()));
    panel.setClosed([] { quitWhenIdle(); });
    const platform::TerminationSignals signals([&panel] { panel.close(); });
    panel.open();
    return QApplication::exec();
}

} // namespace panel

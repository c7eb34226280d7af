#include "center/Program.h"

#include "center/Backdrop.h"
#include "center/Language.h"
#include "center/Options.h"
#include "center/Panel.h"
#include "center/Snapshot.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/InotifyWatcher.h"
#include "platform/system/MainQueue.h"
#include "platform/system/TerminationSignals.h"
#include "platform/system/TimerAlarm.h"
#include "platform/views/Accessibility.h"

#include <QApplication>
#include <QSemaphore>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace center {

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

QtMessageHandler printMessage = nullptr; // null where messages are silenced
bool isConnected = false;                // to the display

// Carries out what the user has chosen, on the main thread. Another thread waits for that, but not for ever:
// the main thread may be waiting for the display.
void finishWork() {
    if (!qApp || QThread::currentThread() == qApp->thread()) {
        platform::MainQueue::current().finish();
        return;
    }
    constexpr int longestWait = 2000; // milliseconds; a choice is carried out after 500
    const auto done = std::make_shared<QSemaphore>();
    const auto finish = [done] {
        platform::MainQueue::current().finish();
        done->release();
    };
    QMetaObject::invokeMethod(qApp, finish, Qt::QueuedConnection);
    done->tryAcquire(1, longestWait);
}

// Qt would abort the process with a report of its own.
[[noreturn]] void endWithoutDisplay() {
    std::fputs("korvel-today: there is no display to show the panel on\n", stderr);
    std::_Exit(1);
}

// Right after Qt has said that the display is gone it ends the process and tells nobody else: on X11 with
// exit(), on Wayland with _exit() and from a thread of its own.
void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (printMessage)
        printMessage(type, context, text);
    if (type == QtFatalMsg && !isConnected)
        endWithoutDisplay();
    if (text.startsWith(QLatin1String("The X11 connection broke")) ||
        text.startsWith(QLatin1String("The Wayland connection ")))
        finishWork();
}

// Qt's messages (about a missing runtime folder or a font) are for developers, who set QT_LOGGING_RULES.
void installMessageHandler() {
    const QtMessageHandler before = qInstallMessageHandler(handleMessage);
    if (qEnvironmentVariableIsSet("QT_LOGGING_RULES"))
        printMessage = before;
}

int showPanel() {
    // A file that grows beyond the process's limit is a write that fails, like one on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication::setQuitOnLastWindowClosed(false);
    platform::installViewAccessibility();
    Panel panel(backdropOfDesktop(), Height::OfScreen, defaultContentWidth,
                std::make_unique<LoadTriggers>(std::make_unique<platform::InotifyWatcher>(),
                                               std::make_unique<platform::TimerAlarm>()));
    panel.setClosed([] { quitWhenIdle(); });
    const platform::TerminationSignals signals([&panel] { panel.close(); });
    panel.open();
    return QApplication::exec();
}

} // namespace

int run(int argc, char** argv) {
    const auto parsed = parseOptions({argv + 1, argv + argc});
    if (const auto* fault = std::get_if<UsageError>(&parsed)) {
        std::fprintf(stderr, "korvel-today: %s\n", qUtf8Printable(fault->message));
        return 2;
    }
    const auto& options = std::get<Options>(parsed);
    if (options.showsHelp || options.showsVersion) {
        std::fputs(qUtf8Printable(options.showsHelp ? helpText() : versionText()), stdout);
        return 0;
    }
    if (!options.containers.empty())
        platform::GroupContainers::setFolder(options.containers);
    if (options.snapshot)
        prepareSnapshot(*options.snapshot);
    installMessageHandler();
    // Qt would take options of its own from the arguments, which this program does not have.
    int count = 1;
    QApplication application(count, argv);
    isConnected = true;
    installLanguage();
    if (options.snapshot)
        return writeSnapshot(*options.snapshot) ? 0 : 1;
    return showPanel();
}

} // namespace center

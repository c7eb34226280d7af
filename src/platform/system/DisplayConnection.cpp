#include "platform/system/DisplayConnection.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QString>
#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

namespace platform {

namespace {

QtMessageHandler printMessage = nullptr; // null where messages are silenced
bool isReached = false;

std::function<void()>& beforeEnd() {
    static std::function<void()> handler;
    return handler;
}

// Another thread waits for the handler, but not for ever: the main thread may be waiting for the display.
void callBeforeEnd() {
    if (!beforeEnd())
        return;
    if (!qApp || QThread::currentThread() == qApp->thread()) {
        beforeEnd()();
        return;
    }
    constexpr int longestWait = 2000; // milliseconds; a choice is carried out after 500
    const auto done = std::make_shared<QSemaphore>();
    const auto call = [done] {
        beforeEnd()();
        done->release();
    };
    QMetaObject::invokeMethod(qApp, call, Qt::QueuedConnection);
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
    if (type == QtFatalMsg && !isReached)
        endWithoutDisplay();
    if (text.startsWith(QLatin1String("The X11 connection broke")) ||
        text.startsWith(QLatin1String("The Wayland connection ")))
        callBeforeEnd();
}

} // namespace

// Qt's messages (about a missing runtime folder or a font) are for developers, who set QT_LOGGING_RULES.
void DisplayConnection::watch() {
    const QtMessageHandler before = qInstallMessageHandler(handleMessage);
    if (qEnvironmentVariableIsSet("QT_LOGGING_RULES"))
        printMessage = before;
}

void DisplayConnection::setReached() {
    isReached = true;
}

void DisplayConnection::setBeforeEnd(std::function<void()> handler) {
    beforeEnd() = std::move(handler);
}

} // namespace platform

#include "panel/PanelProcess.h"

#include "channel/Connection.h"
#include "panel/Backdrop.h"
#include "panel/Panel.h"
#include "platform/storage/InotifyWatcher.h"
#include "platform/system/DisplayConnection.h"
#include "platform/system/MainQueue.h"
#include "platform/system/TerminationSignals.h"
#include "platform/system/TimerAlarm.h"
#include "platform/system/Workspace.h"
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

// The panel as the centre sees it.
class Extension final {
public:
    explicit Extension(int socket)
        : panel_(backdropOfDesktop(), Height::OfScreen, defaultContentWidth,
                 std::make_unique<LoadTriggers>(std::make_unique<platform::InotifyWatcher>(),
                                                std::make_unique<platform::TimerAlarm>()))
        , center_(socket) {
        platform::Workspace::setOpener(
            [this](const QString& url) { return center_.send(channel::OpenUrl{url.toStdString()}); });
        center_.setReceived([this](const channel::ToExtension& message) {
            std::visit([this](const auto& asked) { take(asked); }, message);
        });
        center_.setEnded([this] { end(); });
        panel_.setBackdropOfDesktop(backdropOfDesktop);
        panel_.setShown([this] { center_.send(channel::Shown{}); });
        panel_.setClosed([this] { tellClosed(); });
        panel_.load();
        panel_.setCountsChanged([this](const Counts& counts) {
            center_.send(channel::Counts{counts.overdue, counts.dueToday});
        });
        center_.send(channel::Ready{channel::protocolVersion});
    }
    ~Extension() { platform::Workspace::setOpener({}); }
    Extension(const Extension&) = delete;
    Extension& operator=(const Extension&) = delete;

    // The panel closes at once.
    void end() {
        panel_.close();
        quitWhenIdle();
    }

private:
    void take(const channel::Show& asked) {
        panel_.open({.screen = QString::fromStdString(asked.screen),
                     .activationToken = QString::fromStdString(asked.activationToken),
                     .hidesOnFocusLoss = asked.hidesOnFocusLoss});
    }
    // The answer comes in any case.
    void take(const channel::Hide&) {
        if (panel_.window().isVisible())
            panel_.close();
        else
            tellClosed();
    }
    void take(const channel::Quit&) { end(); }
    void take(const channel::Motion& asked) {
        platform::MainQueue::current().setReducedMotion(asked.isReduced);
    }

    void tellClosed() {
        platform::MainQueue& queue = platform::MainQueue::current();
        if (!queue.isIdle()) {
            center_.send(channel::Pending{true});
            queue.whenNextIdle([this] { center_.send(channel::Pending{false}); });
        }
        center_.send(channel::Closed{});
    }

    Panel panel_;
    channel::ConnectionToCenter center_;
};

} // namespace

int runExtension(int socket) {
    // A file that grows beyond the process's limit is a write that fails, like one on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication::setQuitOnLastWindowClosed(false);
    platform::installViewAccessibility();
    platform::DisplayConnection::setBeforeEnd([] { platform::MainQueue::current().finish(); });
    Extension extension(socket);
    const platform::TerminationSignals signals([&extension] { extension.end(); });
    return QApplication::exec();
}

} // namespace panel

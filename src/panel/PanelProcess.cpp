#include "panel/PanelProcess.h"

#include "channel/Connection.h"
#include "panel/Backdrop.h"
#include "panel/Panel.h"
#include "panel/Welcome.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/storage/InotifyWatcher.h"
#include "platform/system/DisplayConnection.h"
#include "platform/system/MainQueue.h"
#include "platform/system/SessionBus.h"
#include "platform/system/TerminationSignals.h"
#include "platform/system/TimerAlarm.h"
#include "platform/system/Workspace.h"
#include "platform/views/Accessibility.h"

#include <QAccessible>
#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <memory>

namespace panel {

namespace {

using namespace std::chrono_literals;

constexpr int defaultContentWidth = 320;
constexpr auto retry = 5s;             // of a request that the centre has refused
constexpr auto longestWaitForBus = 2s; // of a centre that has answered the same already

// Ends the program once nothing that the user has chosen is pending.
void quitWhenIdle() {
    platform::MainQueue& queue = platform::MainQueue::current();
    if (queue.isIdle())
        QApplication::quit();
    else
        queue.whenNextIdle([] { quitWhenIdle(); });
}

// Waits until the toolkit is on the accessibility bus, if the centre has handed its address. It asks for the
// way to that bus only once events are handled.
void waitForAccessibilityBus() {
    const bool mayBe = platform::isOnX11() || platform::isOnWayland();
    if (!mayBe || qgetenv(platform::sessionBusVariable) == platform::addressOfNoBus ||
        QAccessible::isActive())
        return;
    class Observer final : public QAccessible::ActivationObserver {
    public:
        explicit Observer(QEventLoop& loop)
            : loop_(loop) {
            QAccessible::installActivationObserver(this);
        }
        Observer(const Observer&) = delete;
        Observer& operator=(const Observer&) = delete;
        ~Observer() override { QAccessible::removeActivationObserver(this); }
        void accessibilityActiveChanged(bool) override { loop_.quit(); }

    private:
        QEventLoop& loop_;
    };
    QEventLoop loop;
    const Observer observer(loop);
    QTimer::singleShot(longestWaitForBus, &loop, &QEventLoop::quit);
    loop.exec();
}

// The panel as the centre sees it.
class Extension final {
public:
    Extension(int socket, const Confinement& confinement)
        : panel_(backdropOfDesktop(), Height::OfScreen, defaultContentWidth,
                 std::make_unique<exchange::LoadTriggers>(std::make_unique<platform::InotifyWatcher>(),
                                                          std::make_unique<platform::TimerAlarm>()))
        , center_(socket) {
        platform::Workspace::setOpener(
            [this](const QString& url) { return center_.send(channel::OpenUrl{url.toStdString()}); });
        center_.setReceived([this](const channel::ToExtension& message) {
            std::visit([this](const auto& asked) { take(asked); }, message);
        });
        center_.setEnded([this] { end(); });
        panel_.setBackdropOfDesktop(backdropOfDesktop);
        panel_.setMayLoad([this, &confinement] {
            if (!confinement.isOutdated())
                return true;
            center_.send(channel::Restart{});
            QTimer::singleShot(retry, &panel_.window(), [this] { panel_.loadWhenIdle(); });
            return false;
        });
        panel_.setShown([this] { center_.send(channel::Shown{}); });
        panel_.setClosed([this] { tellClosed(); });
        panel_.setSourcesWanted([this] { center_.send(channel::FindSources{}); });
        panel_.setSourceChosen([this](int number) { center_.send(channel::ConnectSource{number}); });
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
    void take(const channel::Source& found) {
        if (Welcome* welcome = panel_.welcome())
            welcome->offer(
                {found.number, QString::fromStdString(found.program), QString::fromStdString(found.path)});
    }
    void take(const channel::SourceFault& fault) {
        if (Welcome* welcome = panel_.welcome())
            welcome->setFault(fault.number, QString::fromStdString(fault.reason));
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

int runExtension(int socket, const Confinement& confinement) {
    // A file that grows beyond the process's limit is a write that fails, like one on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication::setQuitOnLastWindowClosed(false);
    platform::installViewAccessibility();
    platform::DisplayConnection::setBeforeEnd([] { platform::MainQueue::current().finish(); });
    waitForAccessibilityBus();
    if (const std::error_code error = Confinement::forbidConnections()) {
        std::fprintf(stderr, "korvel-today: connections cannot be forbidden: %s\n", error.message().c_str());
        return 1;
    }
    Extension extension(socket, confinement);
    const platform::TerminationSignals signals([&extension] { extension.end(); });
    return QApplication::exec();
}

} // namespace panel

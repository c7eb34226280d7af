#include "center/CenterProcess.h"

#include "center/AccessibilityBus.h"
#include "center/Appearance.h"
#include "center/ApplicationService.h"
#include "center/BridgeUpdates.h"
#include "center/Center.h"
#include "center/Commands.h"
#include "center/Notifications.h"
#include "center/Reminder.h"
#include "center/SessionState.h"
#include "center/Settings.h"
#include "center/SourceOffers.h"
#include "center/Tray.h"
#include "center/UrlOpener.h"
#include "model/GroupIdentifiers.h"
#include "model/HostUrls.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/InotifyWatcher.h"
#include "platform/system/DisplayConnection.h"
#include "platform/system/TerminationSignals.h"
#include "platform/system/TimerAlarm.h"
#include "platform/system/Workspace.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QCursor>
#include <QScreen>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <utility>

namespace center {

namespace {

std::string nameOf(const QScreen* screen) {
    return screen ? screen->name().toStdString() : std::string();
}

// Where the user looks. On Wayland nobody but the compositor knows.
std::string screenOfPointer() {
    if (platform::isOnWayland())
        return {};
    return nameOf(QGuiApplication::screenAt(QCursor::pos()));
}

void addTransaction() {
    platform::Workspace::openUrl(model::hostUrl(model::newTransactionRequest));
}

void openApplication() {
    platform::Workspace::openUrl(model::hostUrl(model::allTransactionsRequest));
}

// Opens the container, or what there is of the way to it.
void showSharedFolder() {
    std::filesystem::path folder =
        platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
    std::error_code error;
    while (!std::filesystem::is_directory(folder, error) && folder.has_relative_path())
        folder = folder.parent_path();
    platform::Workspace::openUrl(QString::fromStdString(folder.string()));
}

void perform(Center& center, const channel::Command& command) {
    channel::Show request{screenOfPointer(), command.activationToken, false};
    if (command.name == showCommand)
        center.show(request);
    else if (command.name == toggleCommand) {
        request.hidesOnFocusLoss = true; // asked for by a key
        center.toggle(request);
    } else if (command.name == hideCommand)
        center.hide();
    else if (command.name == quitCommand)
        center.quit();
    else if (command.name == addCommand)
        addTransaction();
    else if (command.name == openApplicationCommand)
        openApplication();
    else if (command.name == showFolderCommand)
        showSharedFolder();
}

std::unique_ptr<platform::PathWatcher> watcher() {
    return std::make_unique<platform::InotifyWatcher>();
}

// The item of the tray, and what the panel's life has to do with it.
class TrayOfCenter final {
public:
    TrayOfCenter(const QDBusConnection& bus, Center& center)
        : tray_(bus) {
        // A click that takes the focus from the panel has hidden it already.
        tray_.setToggled([&center](QPoint pointer) {
            const QScreen* screen = pointer.isNull() ? nullptr : QGuiApplication::screenAt(pointer);
            if (!center.hasJustClosed())
                center.toggle({screen ? nameOf(screen) : screenOfPointer(), {}, true});
        });
        tray_.setShowChosen([&center] { center.show({screenOfPointer(), {}, true}); });
        tray_.setAddChosen(addTransaction);
        tray_.setOpenApplicationChosen(openApplication);
        tray_.setShowFolderChosen(showSharedFolder);
        tray_.setQuitChosen([&center] { center.quit(); });
    }

    void setCounts(const channel::Counts& counts) { tray_.setCounts(counts.overdue, counts.dueToday); }
    void setColorScheme(ColorScheme scheme) { tray_.setColorScheme(scheme); }

private:
    Tray tray_;
};

// The daily reminder: what it rests on, and how the user is told.
class ReminderOfCenter final {
public:
    ReminderOfCenter(const QDBusConnection& bus, const SessionState& session, Center& center)
        : session_(session)
        , settings_(Settings::defaultFile(), watcher())
        , reminder_(Reminder::defaultFile(), std::make_unique<platform::TimerAlarm>(), watcher())
        , notifications_(bus) {
        reminder_.setSettings(settings_.notifications());
        settings_.setChanged([this] { reminder_.setSettings(settings_.notifications()); });
        reminder_.setRemind([this](int overdue, int dueToday) { notifications_.show(overdue, dueToday); });
        notifications_.setOpened([&center](const QString& token) {
            center.show({screenOfPointer(), token.toStdString(), false});
        });
        sessionChanged();
    }

    void setCounts(const channel::Counts& counts) {
        reminder_.setCounts(counts.overdue, counts.dueToday);
        notifications_.setCounts(counts.overdue, counts.dueToday);
    }
    void sessionChanged() { reminder_.setSessionInUse(session_.isActiveAndUnlocked()); }

private:
    const SessionState& session_;
    Settings settings_;
    Reminder reminder_;
    Notifications notifications_;
};

// The bills of other finance programs: what korvel-today-bridge is called for.
class BridgeOfCenter final {
public:
    explicit BridgeOfCenter(Center& center)
        : updates_(call(), watcher(), std::make_unique<platform::TimerAlarm>())
        , offers_(call(), updates_,
                  [&center](const channel::ToExtension& message) { center.tellPanel(message); }) {
        center.setFindSources([this] { offers_.find(); });
        center.setConnectSource([this](int number) { offers_.connect(number); });
    }

private:
    BridgeCall call() {
        return [this](const QStringList& arguments, std::function<void(const BridgeResult&)> done) {
            program_.call(arguments, std::move(done));
        };
    }

    BridgeProgram program_; // the first, since the others call it
    BridgeUpdates updates_;
    SourceOffers offers_;
};

// Whether a command is carried out by there being no panel.
bool endsAnother(const channel::Command& command) {
    return command.name == hideCommand || command.name == quitCommand;
}

} // namespace

std::string instanceName(const std::string& containers) {
    std::string name = "korvel-today";
    if (containers.empty())
        return name;
    std::error_code error;
    const std::string path = std::filesystem::weakly_canonical(containers, error).string();
    const QByteArray hash = QCryptographicHash::hash(QByteArray::fromStdString(error ? containers : path),
                                                     QCryptographicHash::Sha256);
    return name + "-" + hash.toHex().left(16).toStdString();
}

std::optional<int> askRunning(SingleInstance& instance, const Start& start) {
    const auto answer = instance.isFirst() ? std::nullopt : instance.ask(start.command);
    if (!answer)
        return instance.isLocked() && endsAnother(start.command) ? std::optional(0) : std::nullopt;
    if (answer == SingleInstance::Answer::Done)
        return 0;
    std::fputs("korvel-today: the one that runs already does not answer\n", stderr);
    return 1;
}

int runCenter(SingleInstance& instance, const Start& start) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that grows beyond the process's limit is a write that fails
    QApplication::setQuitOnLastWindowClosed(false);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const bool isUsersOwn = start.containers.empty();
    // Another runtime folder, or none, hides another lock; the bus is the same.
    if (isUsersOwn && ApplicationService::ask(bus, start.command))
        return 0;
    if (!instance.isLocked() && endsAnother(start.command))
        return 0;
    UrlOpener opener(bus, UrlOpener::wayOfProcess());
    platform::Workspace::setOpener([&opener](const QString& url) { return opener.open(url); });
    Center center(watcher());
    center.setQuitted([] { QApplication::quit(); });
    platform::DisplayConnection::setBeforeEnd([&center] { center.waitForExtension(); });
    const platform::TerminationSignals signals([&center] { center.quit(); });

    const auto asked = [&center](const channel::Command& command) { perform(center, command); };
    instance.listen(asked);
    std::optional<ApplicationService> service;
    if (isUsersOwn)
        service.emplace(bus, asked);

    // Who asks from now on starts another one, which waits for the end of this one.
    center.setQuitting([&] {
        const auto refuse = [&] {
            instance.stopListening();
            service.reset();
        };
        QMetaObject::invokeMethod(qApp, refuse, Qt::QueuedConnection); // it may be one of them that asks
    });

    TrayOfCenter tray(bus, center);
    SessionState session(QDBusConnection::systemBus(), bus);
    session.setLocked([&center] { center.hide(); });
    std::optional<ReminderOfCenter> reminder;
    std::optional<BridgeOfCenter> bridge;
    if (isUsersOwn) {
        reminder.emplace(bus, session, center);
        bridge.emplace(center);
        session.setChanged([&reminder] { reminder->sessionChanged(); });
    }
    center.setCountsChanged([&](const channel::Counts& counts) {
        tray.setCounts(counts);
        if (reminder)
            reminder->setCounts(counts);
    });

    Appearance appearance(bus, Appearance::defaultKdeFile(), watcher());
    tray.setColorScheme(appearance.colorScheme());
    appearance.setColorSchemeChanged([&tray](ColorScheme scheme) { tray.setColorScheme(scheme); });
    center.setReducedMotion(appearance.isMotionReduced());
    appearance.setReducedMotionChanged([&center](bool isReduced) { center.setReducedMotion(isReduced); });

    // The extension is started once it is known whether assistive programs are in use: it is told at its
    // start only.
    AccessibilityBus accessibility(bus);
    accessibility.setChanged([&, isFirst = true](const QString& address) mutable {
        center.setAccessibilityBus(address);
        if (!std::exchange(isFirst, false))
            return;
        center.start();
        perform(center, start.command);
    });
    const int status = QApplication::exec();
    platform::Workspace::setOpener({});
    return status;
}

} // namespace center

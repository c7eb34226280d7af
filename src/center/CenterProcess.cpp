#include "center/CenterProcess.h"

#include "center/AccessibilityBus.h"
#include "center/ApplicationService.h"
#include "center/Center.h"
#include "center/Commands.h"
#include "model/GroupIdentifiers.h"
#include "model/HostUrls.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/InotifyWatcher.h"
#include "platform/system/DisplayConnection.h"
#include "platform/system/TerminationSignals.h"
#include "platform/system/Workspace.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QCursor>
#include <QScreen>

#include <cstdio>
#include <filesystem>

namespace center {

namespace {

// That of the pointer, where the user looks.
std::string screenOfPointer() {
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? screen->name().toStdString() : std::string();
}

// The container, or what there is of the way to it.
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
        platform::Workspace::openUrl(model::hostUrl(model::newTransactionRequest));
    else if (command.name == openApplicationCommand)
        platform::Workspace::openUrl(model::hostUrl(model::allTransactionsRequest));
    else if (command.name == showFolderCommand)
        showSharedFolder();
}

bool wantsNothingOfANewOne(const channel::Command& command) {
    return command.name == hideCommand || command.name == quitCommand;
}

} // namespace

std::string instanceName(const std::string& containers) {
    const std::string name = "korvel-today";
    if (containers.empty())
        return name;
    std::error_code error;
    const std::string path = std::filesystem::weakly_canonical(containers, error).string();
    const QByteArray hash = QCryptographicHash::hash(QByteArray::fromStdString(error ? containers : path),
                                                     QCryptographicHash::Sha256);
    return name + "-" + hash.toHex().left(16).toStdString();
}

std::optional<int> askRunning(const SingleInstance& instance, const Start& start) {
    if (instance.isFirst())
        return wantsNothingOfANewOne(start.command) ? std::optional(0) : std::nullopt;
    if (instance.ask(start.command))
        return 0;
    std::fputs("korvel-today: the one that runs already does not answer\n", stderr);
    return 1;
}

int runCenter(SingleInstance& instance, const Start& start) {
    QApplication::setQuitOnLastWindowClosed(false);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    Center center(std::make_unique<platform::InotifyWatcher>());
    center.setQuitted([] { QApplication::quit(); });
    platform::DisplayConnection::setBeforeEnd([&center] { center.waitForExtension(); });
    const auto asked = [&center](const channel::Command& command) { perform(center, command); };
    instance.listen(asked);
    std::optional<ApplicationService> service;
    if (start.containers.empty())
        service.emplace(bus, asked);
    AccessibilityBus accessibility(bus);
    accessibility.setChanged([&, isFirst = true](const QString& address) mutable {
        center.setAccessibilityBus(address);
        if (!std::exchange(isFirst, false))
            return;
        center.start();
        perform(center, start.command);
    });
    const platform::TerminationSignals signals([&center] { center.quit(); });
    return QApplication::exec();
}

} // namespace center

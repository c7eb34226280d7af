#include "center/ApplicationService.h"

#include "center/Commands.h"

#include <QDBusMessage>

#include <utility>

namespace center {

namespace {

constexpr const char* path = "/com/korvel/today";
constexpr const char* interface = "org.freedesktop.Application";

// The older key is that of X11's startup notification.
std::string tokenOf(const QVariantMap& platformData) {
    for (const char* key : {"activation-token", "desktop-startup-id"}) {
        const QString token = platformData.value(QLatin1String(key)).toString();
        if (!token.isEmpty())
            return token.toStdString();
    }
    return {};
}

} // namespace

ApplicationService::ApplicationService(QDBusConnection bus,
                                       std::function<void(const channel::Command&)> handler)
    : bus_(std::move(bus))
    , asked_(std::move(handler)) {
    if (bus_.registerObject(QLatin1String(path), this, QDBusConnection::ExportScriptableSlots))
        bus_.registerService(QLatin1String(name));
}

ApplicationService::~ApplicationService() {
    bus_.unregisterService(QLatin1String(name));
    bus_.unregisterObject(QLatin1String(path));
}

bool ApplicationService::ask(const QDBusConnection& bus, const channel::Command& command) {
    auto call = QDBusMessage::createMethodCall(QLatin1String(name), QLatin1String(path),
                                               QLatin1String(interface), QStringLiteral("ActivateAction"));
    call.setAutoStartService(false);
    QVariantMap platformData;
    if (!command.activationToken.empty())
        platformData.insert(QStringLiteral("activation-token"),
                            QString::fromStdString(command.activationToken));
    call << QString::fromStdString(command.name) << QVariantList() << platformData;
    constexpr int longestWait = 5000; // milliseconds
    return bus.isConnected() &&
           bus.call(call, QDBus::Block, longestWait).type() == QDBusMessage::ReplyMessage;
}

void ApplicationService::Activate(const QVariantMap& platformData) {
    asked_({std::string(showCommand), tokenOf(platformData)});
}

// Opens no files: whoever gives some wants to see the panel.
void ApplicationService::Open(const QStringList&, const QVariantMap& platformData) {
    Activate(platformData);
}

void ApplicationService::ActivateAction(const QString& action, const QVariantList&,
                                        const QVariantMap& platformData) {
    asked_({action.toStdString(), tokenOf(platformData)});
}

} // namespace center

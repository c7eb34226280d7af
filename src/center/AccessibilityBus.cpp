#include "center/AccessibilityBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

namespace center {

namespace {

constexpr int longestWait = 500; // milliseconds; an answer is on its way at once or there is none
const QString service = QStringLiteral("org.a11y.Bus");
const QString path = QStringLiteral("/org/a11y/bus");
const QString statusInterface = QStringLiteral("org.a11y.Status");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

// Calls and passes the answer on; an error is an answer without arguments.
void call(const QDBusConnection& bus, const QDBusMessage& message, QObject* context,
          std::function<void(const QVariantList& answer)> handler) {
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, longestWait), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [handler = std::move(handler)](QDBusPendingCallWatcher* done) {
                         done->deleteLater();
                         handler(done->isError() ? QVariantList() : done->reply().arguments());
                     });
}

} // namespace

AccessibilityBus::AccessibilityBus(QDBusConnection bus)
    : bus_(std::move(bus)) {
    bus_.connect(service, path, propertiesInterface, QStringLiteral("PropertiesChanged"), this,
                 SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    auto* watcher = new QDBusServiceWatcher(service, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] { askWhetherUsed(); });
}

void AccessibilityBus::setChanged(std::function<void(const QString&)> handler) {
    changed_ = std::move(handler);
    if (bus_.isConnected())
        askWhetherUsed();
    else
        tell({});
}

void AccessibilityBus::propertiesChanged(const QString& interface, const QVariantMap&, const QStringList&) {
    if (interface == statusInterface)
        askWhetherUsed();
}

// The service is not started for the question.
void AccessibilityBus::askWhetherUsed() {
    if (qEnvironmentVariableIsSet("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")) {
        askForAddress();
        return;
    }
    auto question =
        QDBusMessage::createMethodCall(service, path, propertiesInterface, QStringLiteral("GetAll"));
    question.setAutoStartService(false);
    question << statusInterface;
    call(bus_, question, this, [this](const QVariantList& answer) {
        const QVariantMap status = answer.isEmpty() ? QVariantMap() : qdbus_cast<QVariantMap>(answer.front());
        if (status.value(QStringLiteral("IsEnabled")).toBool() ||
            status.value(QStringLiteral("ScreenReaderEnabled")).toBool())
            askForAddress();
        else
            tell({});
    });
}

void AccessibilityBus::askForAddress() {
    const auto question =
        QDBusMessage::createMethodCall(service, path, service, QStringLiteral("GetAddress"));
    call(bus_, question, this, [this](const QVariantList& answer) {
        tell(answer.isEmpty() ? QString() : answer.front().toString());
    });
}

void AccessibilityBus::tell(const QString& address) {
    if (std::exchange(hasTold_, true) && address == address_)
        return;
    address_ = address;
    shared_.reset();
    if (!address.isEmpty())
        shared_ = std::make_unique<AccessibilityAddress>(address);
    changed_(address);
}

} // namespace center

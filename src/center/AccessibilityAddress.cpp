#include "center/AccessibilityAddress.h"

#include <utility>

namespace center {

namespace {

const QString connectionName = QStringLiteral("korvel-accessibility");

} // namespace

AccessibilityAddressAdaptor::AccessibilityAddressAdaptor(QObject* parent, QString address)
    : QDBusAbstractAdaptor(parent)
    , address_(std::move(address)) {}

AccessibilityAddress::AccessibilityAddress(const QString& address)
    : bus_(QDBusConnection::connectToBus(address, connectionName)) {
    new AccessibilityAddressAdaptor(this, address);
    new AccessibilityStatusAdaptor(this);
    bus_.registerObject(QStringLiteral("/org/a11y/bus"), this);
    bus_.registerService(QStringLiteral("org.a11y.Bus"));
}

AccessibilityAddress::~AccessibilityAddress() {
    QDBusConnection::disconnectFromBus(connectionName);
}

} // namespace center

#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <memory>

namespace center {

// What org.a11y.Bus says on the session bus, said once more on the accessibility bus itself: that assistive
// programs are in use, and that bus's own address. The toolkit asks for both on what it takes for the session
// bus, so a process that is given the accessibility bus for that finds its way and needs no other. (The
// variable that is meant for this, AT_SPI_BUS_ADDRESS, has no effect in Qt 6.4: the bridge to assistive
// programs starts to listen after it is told.)
class AccessibilityAddress final : public QObject {
    Q_OBJECT

public:
    explicit AccessibilityAddress(const QString& address);
    ~AccessibilityAddress() override;

private:
    QDBusConnection bus_;
};

class AccessibilityAddressAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Bus")

public:
    AccessibilityAddressAdaptor(QObject* parent, QString address);

public Q_SLOTS:
    QString GetAddress() const { return address_; }

private:
    QString address_;
};

class AccessibilityStatusAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Status")
    Q_PROPERTY(bool IsEnabled READ isInUse)
    Q_PROPERTY(bool ScreenReaderEnabled READ isInUse)

public:
    explicit AccessibilityStatusAdaptor(QObject* parent)
        : QDBusAbstractAdaptor(parent) {}

    [[nodiscard]] bool isInUse() const { return true; }
};

} // namespace center

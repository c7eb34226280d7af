#pragma once

#include "center/AccessibilityAddress.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

namespace center {

// The bus on which assistive programs reach others: org.a11y.Bus on the session bus knows its address. It is
// of interest while any such program is in use (org.a11y.Status), or where QT_LINUX_ACCESSIBILITY_ALWAYS_ON
// is set. Main thread only.
class AccessibilityBus final : public QObject {
    Q_OBJECT

public:
    explicit AccessibilityBus(QDBusConnection bus);

    // Called with the address, empty where there is none: once as soon as it is known, which may be at once,
    // and each time it has changed.
    void setChanged(std::function<void(const QString& address)> handler);

private Q_SLOTS:
    void propertiesChanged(const QString& interface, const QVariantMap& changed,
                           const QStringList& invalidated);

private:
    void askWhetherUsed();
    void askForAddress();
    void tell(const QString& address);

    QDBusConnection bus_;
    bool hasTold_ = false;
    QString address_;
    std::unique_ptr<AccessibilityAddress> shared_;
    std::function<void(const QString&)> changed_;
};

} // namespace center

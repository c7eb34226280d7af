#pragma once

#include "channel/Message.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <functional>

namespace center {

// The application on the session bus, as desktops start and ask it: org.freedesktop.Application, the
// freedesktop interface of desktop entries, under the name com.korvel.today.
class ApplicationService final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    static constexpr const char* name = "com.korvel.today";

    // Takes the name on a bus, if there is one and nobody else has it.
    explicit ApplicationService(QDBusConnection bus, std::function<void(const channel::Command&)> handler);
    ~ApplicationService() override;

    // Asks the one that has the name. False where nobody has it or none answers.
    [[nodiscard]] static bool ask(const QDBusConnection& bus, const channel::Command& command);

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList& parameter,
                                     const QVariantMap& platformData);

private:
    QDBusConnection bus_;
    std::function<void(const channel::Command&)> asked_;
};

} // namespace center

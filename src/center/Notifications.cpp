#include "center/Notifications.h"

#include <QCoreApplication>
#include <QVariantMap>

namespace center {

namespace {

QString path() {
    return QStringLiteral("/org/freedesktop/Notifications");
}

QString interface() {
    return QStringLiteral("org.freedesktop.Notifications"); // the service has the same name
}

QString openAction() {
    return QStringLiteral("open");
}

QString notTodayAction() {
    return QStringLiteral("not-today");
}

// A click on the notification itself.
QString defaultAction() {
    return QStringLiteral("default");
}

} // namespace

// Another service does not know the notifications of the one before.
Notifications::Notifications(const QDBusConnection& bus)
    : service_(bus, interface(), BusService::Start::ByCall) {
    service_.setOwnerChanged([this] { forget(); });
    const auto idOf = [](const QDBusMessage& signal) { return signal.arguments().value(0).toUInt(); };
    const auto textOf = [](const QDBusMessage& signal) { return signal.arguments().value(1).toString(); };
    service_.listen(path(), interface(), QStringLiteral("ActivationToken"),
                    [this, idOf, textOf](const QDBusMessage& signal) {
                        if (id_ == idOf(signal))
                            token_ = textOf(signal);
                    });
    service_.listen(
        path(), interface(), QStringLiteral("ActionInvoked"),
        [this, idOf, textOf](const QDBusMessage& signal) { invoked(idOf(signal), textOf(signal)); });
    service_.listen(path(), interface(), QStringLiteral("NotificationClosed"),
                    [this, idOf](const QDBusMessage& signal) {
                        if (id_ == idOf(signal))
                            forget();
                    });
}

void Notifications::show(int overdue, int dueToday) {
    close();
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("com.korvel.today")}};
    const QStringList actions{defaultAction(),  qtTrId("NotificationOpenTitle"),
                              openAction(),     qtTrId("NotificationOpenTitle"),
                              notTodayAction(), qtTrId("NotificationNotTodayTitle")};
    constexpr uint replacesNone = 0;
    constexpr int expiresAsUsual = -1;
    send(QStringLiteral("Notify"),
         {QStringLiteral("Korvel Today"), replacesNone, QStringLiteral("com.korvel.today"),
          countsText({overdue, dueToday}), QString(), actions, hints, expiresAsUsual},
         [this, wanted = wanted_](const QDBusMessage& reply) {
             if (reply.type() != QDBusMessage::ReplyMessage)
                 return;
             id_ = reply.arguments().value(0).toUInt();
             if (wanted != wanted_)
                 close();
         });
}

void Notifications::setCounts(int overdue, int dueToday) {
    if (Counts{overdue, dueToday}.isNone())
        close();
}

void Notifications::invoked(uint id, const QString& action) {
    if (id_ != id)
        return;
    const QString token = token_;
    close(); // one that is resident would stay
    if (action != notTodayAction() && opened_)
        opened_(token);
}

void Notifications::close() {
    ++wanted_;
    if (!id_)
        return;
    send(QStringLiteral("CloseNotification"), {*id_});
    forget();
}

void Notifications::send(const QString& method, const QVariantList& arguments, BusService::Handler replied) {
    service_.call(path(), interface(), method, arguments, std::move(replied));
}

void Notifications::forget() {
    id_.reset();
    token_.clear();
}

} // namespace center

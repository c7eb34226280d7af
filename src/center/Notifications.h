#pragma once

#include "center/BusService.h"
#include "center/Counts.h"

#include <QString>

#include <functional>
#include <optional>
#include <utility>

namespace center {

// The notification that reminds of what is due (org.freedesktop.Notifications): numbers only, never names or
// amounts. It is closed when nothing is due any more. Without a service of notifications there is none.
class Notifications final {
public:
    explicit Notifications(const QDBusConnection& bus);

    // The user has chosen to open the panel. The token lets a window take the focus (XDG_ACTIVATION_TOKEN);
    // it is empty where the service gives none.
    void setOpened(std::function<void(const QString& token)> handler) { opened_ = std::move(handler); }

    // Shows a notification of these counts.
    void show(int overdue, int dueToday);

    // What is due now: the notification that is shown is closed if nothing is.
    void setCounts(int overdue, int dueToday);

private:
    void invoked(uint id, const QString& action);
    void close();
    void send(const QString& method, const QVariantList& arguments, BusService::Handler replied = {});
    void forget();

    BusService service_;
    int wanted_ = 0;         // the latest one that was asked for; whatever comes of others is closed
    std::optional<uint> id_; // of the one that is shown, once the service has told it
    QString token_;
    std::function<void(const QString&)> opened_;
};

} // namespace center

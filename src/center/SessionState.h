#pragma once

#include "center/BusService.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <utility>

namespace center {

// Whether the user's session is active (it is the one at its seat, not one behind another user's) and whether
// its screen is locked, as logind and the screen saver tell. What nobody tells counts as active and unlocked.
class SessionState final {
public:
    SessionState(const QDBusConnection& systemBus, const QDBusConnection& sessionBus);

    [[nodiscard]] bool isActive() const { return isActive_.value_or(true); }
    [[nodiscard]] bool isLocked() const;
    [[nodiscard]] bool isActiveAndUnlocked() const { return isActive() && !isLocked(); }

    // Called when isActiveAndUnlocked() has changed.
    void setChanged(std::function<void()> handler) { changed_ = std::move(handler); }

    // Called when the screen is locked, once for each time.
    void setLocked(std::function<void()> handler) { locked_ = std::move(handler); }

private:
    void findSession();
    void askForSession(const QVariantList& questions);
    void follow(const QString& session);
    void readSession();
    void take(const QVariantMap& properties);
    void readScreenSaver();
    void update();

    BusService login_;
    BusService screenSaver_;
    QString session_; // its path on the system bus; empty if it is unknown
    std::optional<bool> isActive_;
    std::optional<bool> hasLockedHint_;
    std::optional<bool> isScreenSaverActive_;
    bool wasInUse_ = true;
    bool wasLocked_ = false;
    std::function<void()> changed_;
    std::function<void()> locked_;
};

} // namespace center

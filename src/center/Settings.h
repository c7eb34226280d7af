#pragma once

#include "platform/storage/PathWatcher.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace center {

// Whether and from when on the user is reminded each day.
struct NotificationSettings {
    bool isEnabled = true;
    int minuteOfDay = 9 * 60; // after local midnight

    bool operator==(const NotificationSettings&) const = default;
};

// The settings of the desktop's side, an INI file that the user writes (docs/settings.md). It is read again
// when it changes. A key that is absent has its default, and so has a value that is malformed, of which
// standard error is told once, by a line with file, key and value. Never written.
class Settings final {
public:
    Settings(std::string file, std::unique_ptr<platform::PathWatcher> watcher);
    ~Settings();
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    // korvel-today/settings.ini in the folder of the user's settings.
    [[nodiscard]] static std::string defaultFile();

    [[nodiscard]] const NotificationSettings& notifications() const { return notifications_; }

    // Called when a setting has another value than before.
    void setChanged(std::function<void()> handler) { changed_ = std::move(handler); }

private:
    void watchAndRead();
    void readAgain();

    std::string file_;
    std::unique_ptr<platform::PathWatcher> watcher_;
    NotificationSettings notifications_;
    QStringList faults_; // that standard error was told of
    std::function<void()> changed_;
};

} // namespace center

#pragma once

#include "center/Counts.h"
#include "center/Settings.h"
#include "platform/storage/PathWatcher.h"
#include "platform/system/WallClockAlarm.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace center {

// Decides when the user is reminded: once a day at most, at the first moment after the time of day of the
// settings at which the session is in use and something is overdue or due today. Days are those of the
// current time zone; it is looked at again when the clock is set, the system wakes or the zone is another.
//
// The last day is kept in a file, so that a new start does not remind again. A day on which the user was
// reminded, and the one before it, which a flight to the west or a clock that is set back may bring again,
// are over. If the last day is later than tomorrow, the clock was wrong then, and it counts for nothing.
class Reminder final {
public:
    Reminder(std::string file, std::unique_ptr<platform::WallClockAlarm> alarm,
             std::unique_ptr<platform::PathWatcher> zoneWatcher);
    ~Reminder();
    Reminder(const Reminder&) = delete;
    Reminder& operator=(const Reminder&) = delete;

    // korvel-today/reminded in the folder of the user's states.
    [[nodiscard]] static std::string defaultFile();

    // Called when the user is to be reminded; not within the constructor.
    void setRemind(std::function<void(int overdue, int dueToday)> handler) { remind_ = std::move(handler); }

    // What the decision rests on. Until they are told there is nothing to be reminded of, the session is in
    // use, and the settings are the default ones.
    void setCounts(int overdue, int dueToday);
    void setSessionInUse(bool isInUse);
    void setSettings(const NotificationSettings& settings);

private:
    void look();
    [[nodiscard]] bool isOver(std::int64_t day) const;
    void remind(std::int64_t day);

    std::string file_;
    std::unique_ptr<platform::WallClockAlarm> alarm_;
    std::unique_ptr<platform::PathWatcher> zoneWatcher_;
    std::optional<std::int64_t> lastDay_; // days since 1970-01-01
    Counts counts_;
    bool isInUse_ = true;
    NotificationSettings settings_;
    std::function<void(int, int)> remind_;
};

} // namespace center

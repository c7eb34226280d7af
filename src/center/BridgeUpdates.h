#pragma once

#include "center/BridgeProgram.h"
#include "platform/storage/FileVersion.h"
#include "platform/storage/PathWatcher.h"
#include "platform/system/WallClockAlarm.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace center {

// Has korvel-today-bridge publish anew whenever the feed may no longer be what the connected finance files
// and the user's actions make of it: at the start; when a connected file, the list of them or the time zone
// changes; when the panel has logged an action; when a day begins; when the clock was set or the system has
// slept. Where the user has never connected a file, nothing is called. Main thread only.
class BridgeUpdates final {
public:
    BridgeUpdates(BridgeCall call, std::unique_ptr<platform::PathWatcher> watcher,
                  std::unique_ptr<platform::WallClockAlarm> alarm);
    ~BridgeUpdates();
    BridgeUpdates(const BridgeUpdates&) = delete;
    BridgeUpdates& operator=(const BridgeUpdates&) = delete;

    // Publishes anew, whether or not anything has changed, and tells what came of it.
    void update(std::function<void(const BridgeResult&)> done = {});

private:
    void changed();
    void lookAtFiles();
    void watchFiles();
    void setAlarm();
    void askForStatus();
    void takeStatus(const BridgeResult& status);
    [[nodiscard]] bool isUsed() const;
    [[nodiscard]] platform::PathWatcher::Paths paths() const;
    [[nodiscard]] std::vector<platform::FileVersion> versions() const;

    BridgeCall call_;
    std::unique_ptr<platform::PathWatcher> watcher_;
    std::unique_ptr<platform::WallClockAlarm> alarm_;
    std::vector<std::string> financeFiles_;        // the connected ones, and what these include
    std::vector<platform::FileVersion> published_; // of paths(), as before the last update; empty: none is
    bool isSettling_ = false;
    bool isUpdating_ = false;
    std::shared_ptr<const bool> life_ =
        std::make_shared<bool>(true); // deferred work knows whether this is gone
};

} // namespace center

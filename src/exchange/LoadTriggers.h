#pragma once

#include "model/TodayTransaction.h"
#include "platform/storage/FileVersion.h"
#include "platform/storage/PathWatcher.h"
#include "platform/system/WallClockAlarm.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace exchange {

// Tells when a list that was loaded may no longer be true: the host application has changed the feed, the
// settings or the icons; one of the transactions falls due; a new day starts; the clock was set, the system
// has slept, or the time zone is another. What this process itself has written is no reason: the list has
// that already.
//
// Changes of files that follow each other closely are told once. Main thread only.
class LoadTriggers final {
public:
    LoadTriggers(std::unique_ptr<platform::PathWatcher> watcher,
                 std::unique_ptr<platform::WallClockAlarm> alarm);
    ~LoadTriggers();
    LoadTriggers(const LoadTriggers&) = delete;
    LoadTriggers& operator=(const LoadTriggers&) = delete;

    // Called when a new load is needed, perhaps more than once before it comes.
    void setLoadNeeded(std::function<void()> handler) { loadNeeded_ = std::move(handler); }

    // Called right before and right after a list is read. What changes in between is told.
    void listWillLoad();
    void listDidLoad(const std::vector<TodayTransactionPtr>& transactions);

    // The list is no longer shown: nothing is told until the next load.
    void stop();

private:
    void changed(platform::PathWatcher::Change change);
    void lookOnceSettled(int rounds);
    void lookAtFiles();
    [[nodiscard]] std::vector<platform::FileVersion> versions() const;
    [[nodiscard]] bool isAsLoaded();
    void tell() const;

    std::unique_ptr<platform::PathWatcher> watcher_;
    std::unique_ptr<platform::WallClockAlarm> alarm_;
    std::function<void()> loadNeeded_;
    bool isActive_ = false;
    double loadedAt_ = 0; // seconds since 1970-01-01 00:00 UTC
    platform::PathWatcher::Paths paths_;
    std::vector<platform::FileVersion> known_; // of the paths, as loaded or as this process has left them
    bool hasChanged_ = false;                  // since the last round
    bool entriesHaveChanged_ = false;          // since the load
    bool isSettling_ = false;
    std::shared_ptr<const bool> life_ =
        std::make_shared<bool>(true); // deferred work knows whether this is gone
};

} // namespace exchange

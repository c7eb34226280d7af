#pragma once

#include "model/TodayTransaction.h"

#include <string>
#include <string_view>

// A container with a feed and an action log of as many records, put back before each measurement.
class Container final {
public:
    // In force from here on. The feed is a file of feeds that bench/plist/make-feeds has written; all its
    // records are overdue up to the 20,000th.
    Container(const std::string& folder, const std::string& feedFile);

    // Feed and log as they were at first, on the disk.
    void putBack() const;
    // The feed's first records only, as many as these.
    void keepRecords(std::size_t count);

    [[nodiscard]] const std::string& feedPath() const { return feedPath_; }
    [[nodiscard]] const std::string& logPath() const { return logPath_; }
    // The record in the middle of the feed.
    [[nodiscard]] const TodayTransaction& middle() const { return middle_; }

private:
    void derive();

    std::string folder_;
    std::string feedPath_;
    std::string logPath_;
    std::string feed_;
    std::string log_;
    TodayTransaction middle_{{}};
};

[[nodiscard]] std::string contentOf(const std::string& path);

// What the storage of the action does to a file, and no more: a temporary file beside it, one write, fsync,
// rename, fsync of the folder.
void replaceBarely(const std::string& path, std::string_view bytes);

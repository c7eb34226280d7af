#pragma once

#include "bridge/Database.h"
#include "bridge/Feed.h"

#include <cstdint>
#include <string>

namespace bridge {

// The path of the container that the feed is published in.
[[nodiscard]] std::string containerPath();

// The largest count of days ahead, at most the wanted one, that the panel does not cut short today. It counts
// within the month: on a month's last day it is -1, with which only what is overdue is shown.
[[nodiscard]] std::int64_t uncutDayCount(std::int64_t wanted);

enum class Published { Done, LogHasMore, Failed };

struct Publication {
    Published outcome = Published::Done;
    std::string fault; // a sentence, of a failure
};

// Writes what differs of the icons, the settings and the feed, in this order, so that the panel never misses
// an icon. The database keeps the feed's records before the feed has them, so that every date that an action
// may have is known. Just before the feed is written, with the container locked, the action log is looked at
// once more: if it holds anything, the feed stays as it is, because it may lack what the user has acted on.
[[nodiscard]] Publication publish(const std::string& container, const Feed& feed, const Icons& icons,
                                  std::int64_t dayCount, Database& database);

} // namespace bridge

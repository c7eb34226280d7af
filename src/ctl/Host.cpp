#include "ctl/Host.h"

#include "exchange/GroupIdentifiers.h"
#include "exchange/SharedSettings.h"
#include "platform/storage/GroupContainers.h"

namespace ctl {

std::string containerPath() {
    return platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
}

bool hasContainer() {
    return platform::GroupContainers::containerForGroup(std::string(fullEditionGroupIdentifier)).has_value();
}

exchange::FeedReading readWidgetsList() {
    if (!hasContainer())
        return std::vector<TodayTransactionPtr>();
    return exchange::readFeed(containerPath(), exchange::notificationDayCount());
}

} // namespace ctl

#include "ctl/check/CheckedContainer.h"

#include "ctl/Host.h"
#include "exchange/FeedReader.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "exchange/TodayWidgetLogic.h"

#include <variant>

namespace ctl {

CheckedContainer CheckedContainer::lookUp() {
    CheckedContainer container;
    container.path = containerPath();
    container.exists = hasContainer();
    container.feed = exchange::feedFile(container.path);
    container.settings = settingsFile();
    container.accountKey = exchange::accountKey();
    container.accountFolder = exchange::accountFolder(container.path, container.accountKey);
    container.log = exchange::actionLogFile(container.accountFolder);
    container.icons = exchange::iconsFolder(container.accountFolder);
    container.dayCount = exchange::notificationDayCount();
    const std::variant<double, exchange::FeedFault> limit = exchange::limitForDayCount(container.dayCount);
    if (const double* moment = std::get_if<double>(&limit))
        container.limit = *moment;
    container.hidesList = TodayWidgetLogic::getTransactionsCountToShow().isNone();
    return container;
}

} // namespace ctl

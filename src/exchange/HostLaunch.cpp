#include "exchange/HostLaunch.h"

#include "exchange/SharedSettings.h"
#include "exchange/Text.h"
#include "platform/storage/StorageError.h"
#include "platform/system/Workspace.h"

namespace exchange {

HostLaunch openHost(const char* request, const TodayTransaction* transaction) {
    HostLaunch launch;
    auto defaults = openSharedSettings();
    if (defaults) {
        if (transaction) {
            defaults->setString("edit_transaction_plan_pk", utf8FromText(transaction->planPrimaryKey));
            defaults->setDouble("edit_transaction_date", transaction->date);
        }
        defaults->setString("url_string", request);
        launch.settings = defaults->save();
    } else {
        launch.settings = platform::StorageError::NotADictionary;
    }
    launch.isOpened = platform::Workspace::openUrl(QLatin1String(hostUrlScheme) + QLatin1String("://") +
                                                   QLatin1String(request));
    return launch;
}

} // namespace exchange

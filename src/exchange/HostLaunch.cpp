#include "exchange/HostLaunch.h"

#include "exchange/SharedSettings.h"
#include "exchange/Text.h"
#include "model/HostUrls.h"
#include "platform/storage/StorageError.h"
#include "platform/system/Workspace.h"

namespace exchange {

std::error_code leaveRequest(const char* request, const TodayTransaction* transaction) {
    auto defaults = openSharedSettings();
    if (!defaults)
        return platform::StorageError::NotADictionary;
    if (transaction) {
        defaults->setString("edit_transaction_plan_pk", utf8FromText(transaction->planPrimaryKey));
        defaults->setDouble("edit_transaction_date", transaction->date);
    }
    defaults->setString("url_string", request);
    return defaults->save();
}

bool openHost(const char* request) {
    return platform::Workspace::openUrl(model::hostUrl(request));
}

} // namespace exchange

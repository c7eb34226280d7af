#include "exchange/SharedSettings.h"

#include "model/GroupIdentifiers.h"

namespace exchange {

std::optional<platform::SharedDefaults> openSharedSettings() {
    return platform::SharedDefaults::open(std::string(fullEditionGroupIdentifier));
}

std::int64_t notificationDayCount() {
    const auto defaults = openSharedSettings();
    return defaults ? defaults->integerForKey("notification_days_count") : 0;
}

std::string accountKey() {
    constexpr const char* withoutKey = "-";
    auto defaults = openSharedSettings();
    if (!defaults)
        return withoutKey;
    defaults->synchronize();
    return defaults->stringForKey("account_pk").value_or(withoutKey);
}

} // namespace exchange

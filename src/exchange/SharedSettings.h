#pragma once

#include "platform/storage/SharedDefaults.h"

#include <cstdint>
#include <optional>
#include <string>

// The settings that the widget reads from the suite of the full edition's group, looked up anew at each call.
namespace exchange {

// The suite, or nothing if it cannot be opened.
[[nodiscard]] std::optional<platform::SharedDefaults> openSharedSettings();

// "notification_days_count", the days ahead of today that the feed shows; 0 without suite or key.
[[nodiscard]] std::int64_t notificationDayCount();

// "account_pk", which names the account's folder, read after a synchronize so that a key that the host
// application has just written is seen; "-" without suite or key. As it stands: it may be empty.
[[nodiscard]] std::string accountKey();

} // namespace exchange

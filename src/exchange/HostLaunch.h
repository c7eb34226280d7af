#pragma once

#include "model/TodayTransaction.h"

#include <system_error>

// Opening the host application, which finds in the shared settings what it is asked for.
namespace exchange {

// The scheme of the host application's URLs. Its case is kept.
inline constexpr const char* hostUrlScheme = "korvelWidget";

struct HostLaunch {
    std::error_code settings; // of writing the request; none where it stands there already
    bool isOpened = false;    // whether an opener could be started
};

// Leaves the request, and for one about a transaction that transaction's plan and date, in the shared
// settings, and opens the URL even where there are none. The settings of a group that cannot be opened are an
// error.
[[nodiscard]] HostLaunch openHost(const char* request, const TodayTransaction* transaction);

} // namespace exchange

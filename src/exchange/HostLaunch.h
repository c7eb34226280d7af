#pragma once

#include "model/TodayTransaction.h"

#include <system_error>

// Opening the host application, which finds in the shared settings what it is asked for.
namespace exchange {

// Leaves a request, and for one about a transaction that transaction's plan and date, in the shared settings.
// Errors are those of SharedDefaults::save; settings that cannot be opened are StorageError::NotADictionary.
[[nodiscard]] std::error_code leaveRequest(const char* request, const TodayTransaction* transaction);

// Opens the URL of a request. Whether an opener could be started.
[[nodiscard]] bool openHost(const char* request);

} // namespace exchange

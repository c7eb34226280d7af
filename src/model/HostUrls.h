#pragma once

#include <QString>

// The URLs by which the host application is opened. It finds in the shared settings what it is asked for.
namespace model {

// The case of the scheme is kept.
inline constexpr const char* hostUrlScheme = "korvelWidget";

inline constexpr const char* editTransactionRequest = "tw_edit_transaction";
inline constexpr const char* newTransactionRequest = "tw_new_transaction";
inline constexpr const char* allTransactionsRequest = "tw_all_transactions";

inline QString hostUrl(const char* request) {
    return QLatin1String(hostUrlScheme) + QLatin1String("://") + QLatin1String(request);
}

// Whether a URL is one of the three, letter by letter.
inline bool isHostUrl(const QString& url) {
    return url == hostUrl(editTransactionRequest) || url == hostUrl(newTransactionRequest) ||
           url == hostUrl(allTransactionsRequest);
}

} // namespace model

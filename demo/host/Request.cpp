#include "host/Request.h"

#include "host/RecordText.h"

namespace host {

namespace {

QString pathOf(const QString& url) {
    const QString start = QStringLiteral("korvelWidget://");
    return url.startsWith(start, Qt::CaseInsensitive) ? url.mid(start.size()) : QString();
}

} // namespace

Request readRequest(const QString& url, QTime time, const PlanNames& names) {
    Request request{url, time, QStringLiteral("Nothing that is known here"), std::nullopt, QString()};
    const QString path = pathOf(url);
    if (path == QLatin1String("tw_new_transaction"))
        request.meaning = QStringLiteral("Add a transaction");
    else if (path == QLatin1String("tw_all_transactions"))
        request.meaning = QStringLiteral("Show all transactions");
    else if (path == QLatin1String("tw_edit_transaction")) {
        request.meaning = QStringLiteral("Show this transaction");
        request.transaction = transactionInSettings();
        request.transactionName =
            request.transaction ? names.nameOf(request.transaction->plan) : QStringLiteral("none is named");
    }
    return request;
}

QString outputLine(const Request& request) {
    if (!request.transaction)
        return outputLine({QStringLiteral("request"), request.url});
    return outputLine({QStringLiteral("request"), request.url, request.transaction->plan,
                       numberText(request.transaction->date)});
}

} // namespace host

#pragma once

#include "host/FinanceFiles.h"

#include <QString>
#include <QTime>

#include <optional>

namespace host {

// A URL that the panel has opened, and what it asks of the host application.
struct Request {
    QString url; // exactly as it came
    QTime time;  // of its arrival
    QString meaning;
    std::optional<NamedTransaction> transaction; // where the URL is about one, and the settings name it
    QString transactionName;                     // its plan's
};

// The scheme counts in any case, the rest to the letter.
[[nodiscard]] Request readRequest(const QString& url, QTime time, const PlanNames& names);

// The request as a line for programs.
[[nodiscard]] QString outputLine(const Request& request);

} // namespace host

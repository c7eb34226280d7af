#pragma once

#include "platform/plist/Value.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

// What a host application reads of the files that it shares with the widget: the container of the group
// containers' folder in force, looked up anew at each call. It writes nothing.
namespace host {

struct NamedTransaction {
    QString plan; // the plan's key
    double date;  // the occurrence's, in seconds since 1970-01-01 00:00 UTC
};

// The transaction that the settings name; none where plan or date is missing or of another kind.
[[nodiscard]] std::optional<NamedTransaction> transactionInSettings();

// The records of the account's action log, the oldest first. No log, or one that is no array, has none.
[[nodiscard]] platform::plist::Array actionLog();
[[nodiscard]] QString actionLogPath();

// The folders whose change may concern what is read here, and that exist now.
[[nodiscard]] QStringList foldersToWatch();

// The names of plans, as the feed has told them so far: what was paid has left the feed when its record is in
// the log.
class PlanNames final {
public:
    void learn(const platform::plist::Array& feed);
    // Reads the feed and learns from it.
    void learnFromFeed();
    // The plan's key itself where no name was seen.
    [[nodiscard]] QString nameOf(const QString& plan) const { return names_.value(plan, plan); }

private:
    QHash<QString, QString> names_; // by the plans' keys
};

} // namespace host

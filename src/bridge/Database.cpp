#include "bridge/Database.h"

#include "bridge/Folders.h"
#include "bridge/PlansText.h"
#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"

#include <chrono>
#include <iterator>
#include <system_error>

namespace bridge {

namespace {

constexpr std::int64_t applicationId = 0x4b6f7254; // "KorT"; tells the file from those of other programs
constexpr std::int64_t schemaVersion = 1;

// Days are texts, as people see them who look at the file.
constexpr const char* schema[] = {
    "CREATE TABLE reading (file TEXT PRIMARY KEY, today TEXT, last TEXT, plans TEXT,"
    " fault TEXT NOT NULL DEFAULT '') WITHOUT ROWID",
    "CREATE TABLE include (file TEXT, path TEXT, PRIMARY KEY (file, path)) WITHOUT ROWID",
    // A record of the feed with the number of the last feed that held it.
    "CREATE TABLE published (plan TEXT, date REAL, nominal TEXT NOT NULL, day TEXT NOT NULL,"
    " publication INTEGER NOT NULL, PRIMARY KEY (plan, date)) WITHOUT ROWID",
    // An action with the number of the last feed before it.
    "CREATE TABLE action (number INTEGER PRIMARY KEY AUTOINCREMENT, type INTEGER NOT NULL,"
    " plan TEXT NOT NULL, date REAL NOT NULL, parameter INTEGER NOT NULL, nominal TEXT NOT NULL,"
    " day TEXT NOT NULL, done TEXT NOT NULL, state INTEGER NOT NULL, publication INTEGER NOT NULL)",
    // The number of the feed; one row.
    "CREATE TABLE feed (publication INTEGER NOT NULL)",
    "INSERT INTO feed VALUES (0)",
    // What was not undone counts once between two feeds.
    "CREATE UNIQUE INDEX once ON action (type, plan, date, parameter, nominal, publication) WHERE state <> 2",
    "PRAGMA application_id = 1265594964",
    "PRAGMA user_version = 1",
};
static_assert(applicationId == 1265594964 && schemaVersion == 1);

constexpr const char* actionColumns =
    "SELECT number, type, plan, date, parameter, nominal, day, done, state FROM action ";

Action actionOf(Statement& row) {
    Action action;
    action.number = row.integer(0);
    action.record = {static_cast<exchange::ActionType>(row.integer(1)), row.text(2), row.real(3),
                     row.integer(4)};
    action.nominal = row.day(5);
    action.day = row.day(6);
    action.done = row.day(7);
    action.state = static_cast<ActionState>(row.integer(8));
    return action;
}

std::int64_t numberOf(Sqlite& sqlite, const char* sql) {
    Statement statement(sqlite, sql);
    return statement.next() ? statement.integer(0) : 0;
}

void makeSchema(Sqlite& sqlite) {
    sqlite.run("BEGIN IMMEDIATE");
    // Another process may have made it meanwhile.
    if (numberOf(sqlite, "PRAGMA user_version") == 0)
        for (const char* statement : schema)
            sqlite.run(statement);
    sqlite.run("COMMIT");
}

// What is wrong with an opened database that is not new, or an empty text.
std::string faultOf(Sqlite& sqlite) {
    const std::int64_t application = numberOf(sqlite, "PRAGMA application_id");
    const std::int64_t version = numberOf(sqlite, "PRAGMA user_version");
    Statement check(sqlite, "PRAGMA quick_check(1)");
    const std::string damage = check.next() ? check.text(0) : "";
    if (!sqlite.error().empty())
        return sqlite.error();
    if (application != applicationId)
        return "it is a database of another program";
    if (version > schemaVersion)
        return "it was written by a newer version of this program (" + std::to_string(version) +
               "; this one knows " + std::to_string(schemaVersion) + ")";
    return damage == "ok" ? "" : "it is damaged: " + damage;
}

} // namespace

std::string Database::open() {
    const std::error_code made = platform::makeFolders(ownStateFolder());
    if (!platform::isMade(made))
        return ownStateFolder() + ": " + made.message();
    sqlite_.open(databaseFile());
    // A transaction that is committed survives a loss of power: the claimed log is let go only after it. The
    // journal is the plain one, as what is written is little, and a file alone is easier to keep and to copy
    // than three.
    sqlite_.run("PRAGMA synchronous = EXTRA");
    if (numberOf(sqlite_, "SELECT count(*) FROM sqlite_schema") == 0 && sqlite_.error().empty())
        makeSchema(sqlite_);
    if (const std::string fault = faultOf(sqlite_); !fault.empty())
        sqlite_.fail(fault);
    return error();
}

void Database::begin() {
    sqlite_.run("BEGIN IMMEDIATE");
}

std::string Database::commit() {
    sqlite_.run("COMMIT");
    return error();
}

std::string Database::error() const {
    return sqlite_.error().empty() ? "" : databaseFile() + ": " + sqlite_.error();
}

KeptReading Database::reading(const std::string& file) {
    KeptReading reading;
    Statement row(sqlite_, "SELECT fault, today, last, plans FROM reading WHERE file = ?");
    if (!row.with(file).next())
        return reading;
    reading.fault = row.text(0);
    if (row.text(3).empty())
        return reading;
    reading.today = row.day(1);
    reading.last = row.day(2);
    auto plans = plansOfText(row.text(3));
    if (plans)
        reading.plans = std::move(*plans);
    else
        sqlite_.fail("it is damaged: the plans of a file cannot be read");
    reading.isThere = true;
    return reading;
}

void Database::keepReading(const std::string& file, Day today, Day last, const std::vector<Plan>& plans) {
    Statement(sqlite_, "INSERT OR REPLACE INTO reading (file, today, last, plans) VALUES (?, ?, ?, ?)")
        .with(file)
        .with(today)
        .with(last)
        .with(textOfPlans(plans))
        .run();
}

void Database::keepFault(const std::string& file, const std::string& fault) {
    Statement(sqlite_, "INSERT INTO reading (file, fault) VALUES (?, ?)"
                       " ON CONFLICT (file) DO UPDATE SET fault = excluded.fault")
        .with(file)
        .with(fault)
        .run();
}

std::vector<std::string> Database::includes(const std::string& file) {
    std::vector<std::string> paths;
    Statement row(sqlite_, "SELECT path FROM include WHERE file = ? ORDER BY path");
    row.with(file);
    while (row.next())
        paths.push_back(row.text(0));
    return paths;
}

void Database::keepIncludes(const std::string& file, const std::vector<std::string>& paths) {
    Statement(sqlite_, "DELETE FROM include WHERE file = ?").with(file).run();
    Statement insert(sqlite_, "INSERT OR IGNORE INTO include (file, path) VALUES (?, ?)");
    for (const std::string& path : paths)
        insert.with(file).with(path).run();
}

void Database::dropReading(const std::string& file) {
    Statement(sqlite_, "DELETE FROM reading WHERE file = ?").with(file).run();
    keepIncludes(file, {});
}

std::vector<Action> Database::openActions() {
    std::vector<Action> actions;
    Statement row(sqlite_, (std::string(actionColumns) + "WHERE state IN (0, 3) ORDER BY number").c_str());
    while (row.next())
        actions.push_back(actionOf(row));
    return actions;
}

std::optional<Action> Database::lastOpenAction() {
    Statement row(
        sqlite_, (std::string(actionColumns) + "WHERE state IN (0, 3) ORDER BY number DESC LIMIT 1").c_str());
    return row.next() ? std::optional(actionOf(row)) : std::nullopt;
}

std::vector<Action> Database::enteredPayments() {
    std::vector<Action> actions;
    Statement row(sqlite_,
                  (std::string(actionColumns) + "WHERE state = 1 AND type = ? ORDER BY number DESC").c_str());
    row.with(static_cast<int>(exchange::ActionType::Paid));
    while (row.next())
        actions.push_back(actionOf(row));
    return actions;
}

void Database::setState(std::int64_t action, ActionState state) {
    Statement(sqlite_, "UPDATE action SET state = ? WHERE number = ?")
        .with(static_cast<int>(state))
        .with(action)
        .run();
}

bool Database::addAction(const LoggedRecord& record, Day nominal, Day day, Day done) {
    const std::int64_t now = publication();
    Statement known(sqlite_,
                    "SELECT max(action.publication), max(published.publication) FROM action"
                    " LEFT JOIN published USING (plan, date)"
                    " WHERE type = ? AND plan = ? AND date = ? AND parameter = ? AND action.nominal = ?"
                    " AND state <> 2"
                    " HAVING count(*) > 0");
    known.with(static_cast<int>(record.type))
        .with(record.plan)
        .with(record.date)
        .with(record.parameter)
        .with(nominal);
    // Without a feed in between, or where that did not hold the record, it is handed out again.
    if (known.next() && (known.integer(0) == now || known.integer(1) != now))
        return false;
    Statement(sqlite_,
              "INSERT INTO action (type, plan, date, parameter, nominal, day, done, state, publication)"
              " VALUES (?, ?, ?, ?, ?, ?, ?, 0, ?)")
        .with(static_cast<int>(record.type))
        .with(record.plan)
        .with(record.date)
        .with(record.parameter)
        .with(nominal)
        .with(day)
        .with(done)
        .with(now)
        .run();
    return sqlite_.error().empty();
}

std::int64_t Database::publication() {
    return numberOf(sqlite_, "SELECT publication FROM feed");
}

void Database::publish(const std::vector<PublishedRecord>& records, Day today) {
    const std::int64_t next = publication() + 1;
    Statement(sqlite_, "UPDATE feed SET publication = ?").with(next).run();
    Statement insert(sqlite_, "INSERT OR REPLACE INTO published (plan, date, nominal, day, publication)"
                              " VALUES (?, ?, ?, ?, ?)");
    for (const PublishedRecord& record : records)
        insert.with(record.plan).with(record.date).with(record.nominal).with(record.day).with(next).run();
    Statement(sqlite_, "DELETE FROM published WHERE publication < ? AND day < ?")
        .with(next)
        .with(today - std::chrono::days(366))
        .run();
}

std::optional<PublishedRecord> Database::published(const std::string& plan, double date) {
    Statement row(sqlite_, "SELECT plan, date, nominal, day FROM published WHERE plan = ? AND date = ?");
    if (!row.with(plan).with(date).next())
        return std::nullopt;
    return PublishedRecord{row.text(0), row.real(1), row.day(2), row.day(3)};
}

std::vector<PublishedRecord> Database::publishedNow() {
    std::vector<PublishedRecord> records;
    Statement row(sqlite_, "SELECT plan, date, nominal, day FROM published"
                           " WHERE publication = (SELECT publication FROM feed) ORDER BY date, plan");
    while (row.next())
        records.push_back({row.text(0), row.real(1), row.day(2), row.day(3)});
    return records;
}

} // namespace bridge

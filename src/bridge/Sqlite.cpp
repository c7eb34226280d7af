#include "bridge/Sqlite.h"

#include <sqlite3.h>

#include <optional>
#include <utility>

namespace bridge {

Sqlite::~Sqlite() {
    sqlite3_close(database_);
}

void Sqlite::open(const std::string& path) {
    constexpr int longestWait = 5000; // milliseconds
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    check(sqlite3_open_v2(path.c_str(), &database_, flags, nullptr));
    if (error_.empty())
        check(sqlite3_busy_timeout(database_, longestWait));
}

void Sqlite::run(const char* sql) {
    Statement(*this, sql).run();
}

void Sqlite::fail(std::string sentence) {
    if (error_.empty())
        error_ = std::move(sentence);
}

void Sqlite::check(int result) {
    if (result != SQLITE_OK && result != SQLITE_ROW && result != SQLITE_DONE)
        fail(database_ ? sqlite3_errmsg(database_) : sqlite3_errstr(result));
}

Statement::Statement(Sqlite& database, const char* sql)
    : database_(database) {
    if (database_.error().empty())
        database_.check(sqlite3_prepare_v2(database_.database_, sql, -1, &statement_, nullptr));
}

Statement::~Statement() {
    sqlite3_finalize(statement_);
}

Statement& Statement::with(std::string_view text) {
    if (statement_)
        database_.check(sqlite3_bind_text64(statement_, ++parameter_, text.data(), text.size(),
                                            SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

Statement& Statement::with(std::int64_t number) {
    if (statement_)
        database_.check(sqlite3_bind_int64(statement_, ++parameter_, number));
    return *this;
}

Statement& Statement::with(double number) {
    if (statement_)
        database_.check(sqlite3_bind_double(statement_, ++parameter_, number));
    return *this;
}

Statement& Statement::with(Day day) {
    return with(std::string_view(textOfDay(day)));
}

bool Statement::next() {
    if (!statement_ || !database_.error().empty())
        return false;
    const int result = sqlite3_step(statement_);
    database_.check(result);
    return result == SQLITE_ROW;
}

void Statement::run() {
    while (next()) {
    }
    sqlite3_reset(statement_);
    parameter_ = 0;
}

std::string Statement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return bytes ? std::string(bytes, size) : std::string();
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

double Statement::real(int column) const {
    return sqlite3_column_double(statement_, column);
}

Day Statement::day(int column) {
    const std::optional<Day> day = dayOfText(text(column));
    if (!day)
        database_.fail("it is damaged: \"" + text(column) + "\" is no day");
    return day.value_or(Day());
}

} // namespace bridge

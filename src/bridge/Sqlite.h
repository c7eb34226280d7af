#pragma once

#include "bridge/plans/Day.h"

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace bridge {

// An SQLite database, opened. After its first failure it does nothing more: statements have no rows and
// change nothing, and error() tells what failed. So only the end of a piece of work needs to be looked at.
class Sqlite final {
public:
    Sqlite() = default;
    ~Sqlite();
    Sqlite(const Sqlite&) = delete;
    Sqlite& operator=(const Sqlite&) = delete;

    // Makes the file where there is none.
    void open(const std::string& path);

    void run(const char* sql); // a statement without parameters and rows
    [[nodiscard]] const std::string& error() const { return error_; }
    void fail(std::string sentence);

private:
    friend class Statement;
    void check(int result);

    sqlite3* database_ = nullptr;
    std::string error_;
};

// A statement that is prepared, given its parameters in their order and then stepped through its rows.
class Statement final {
public:
    Statement(Sqlite& database, const char* sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& with(std::string_view text);
    Statement& with(std::int64_t number);
    Statement& with(int number) { return with(static_cast<std::int64_t>(number)); }
    Statement& with(double number);
    Statement& with(Day day); // is kept as text such as "2026-11-21", which has its order

    // Goes to the next row; false where there is none.
    [[nodiscard]] bool next();
    // Runs a statement without rows and makes it ready for other parameters.
    void run();

    // The columns of the row, from 0.
    [[nodiscard]] std::string text(int column) const;
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] double real(int column) const;
    [[nodiscard]] Day day(int column); // fails where it is none

private:
    Sqlite& database_;
    sqlite3_stmt* statement_ = nullptr;
    int parameter_ = 0;
};

} // namespace bridge

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace bridge_test {

// A row of a table, by the names of its columns.
using Row = std::map<std::string, std::string>;

// The bytes of a file below tests/data/bridge. Ends the test program where there is none.
[[nodiscard]] std::string dataFile(const std::string& name);

// The rows of a table of tab-separated columns below tests/data/bridge, whose first line that is no comment
// names them. A lone "-" is an empty cell.
[[nodiscard]] std::vector<Row> tableOf(const std::string& name);

// A text with every one of its parts that equals another replaced; the text itself where there is none is a
// fault of the test and ends it.
[[nodiscard]] std::string replaced(std::string text, const std::string& part, const std::string& other);

// The digits of an amount as a program shows it, with its sign: -95000 of "-950,00 €".
[[nodiscard]] std::int64_t shownUnits(const std::string& text);

// The ISO code of the currency whose sign an amount is shown with.
[[nodiscard]] std::string shownCurrency(const std::string& text);

} // namespace bridge_test

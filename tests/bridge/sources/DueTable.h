#pragma once

#include <map>
#include <string>
#include <vector>

namespace bridge_test {

using Row = std::map<std::string, std::string>; // by the names of the columns

// A table of tests/data/bridge: "#" starts a comment, a tab separates columns, the first line names them.
[[nodiscard]] std::vector<Row> rowsOf(const std::string& path);
[[nodiscard]] std::string contentOf(const std::string& path);

} // namespace bridge_test

#include "bridge/sources/DueTable.h"

#include <fstream>
#include <iterator>
#include <sstream>

namespace bridge_test {

namespace {

std::vector<std::string> columnsOf(std::string line) {
    line += '\t';
    std::vector<std::string> columns;
    std::istringstream stream(line);
    for (std::string column; std::getline(stream, column, '\t');)
        columns.push_back(column);
    return columns;
}

} // namespace

std::string contentOf(const std::string& path) {
    std::ifstream file(KORVEL_TEST_DATA "/bridge/" + path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<Row> rowsOf(const std::string& path) {
    std::vector<Row> rows;
    std::vector<std::string> names;
    std::istringstream stream(contentOf(path));
    for (std::string line; std::getline(stream, line);) {
        if (line.empty() || line.front() == '#')
            continue;
        const std::vector<std::string> columns = columnsOf(line);
        if (names.empty()) {
            names = columns;
            continue;
        }
        Row row;
        for (std::size_t at = 0; at < names.size(); ++at)
            row[names[at]] = at < columns.size() ? columns[at] : "";
        rows.push_back(row);
    }
    return rows;
}

} // namespace bridge_test

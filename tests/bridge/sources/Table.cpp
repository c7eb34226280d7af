#include "bridge/sources/Table.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace bridge_test {

namespace {

std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, '\t');)
        cells.push_back(cell == "-" ? "" : cell);
    return cells;
}

} // namespace

std::string dataFile(const std::string& name) {
    std::ifstream file(std::string(KORVEL_TEST_DATA) + "/bridge/" + name, std::ios::binary);
    if (!file) {
        ADD_FAILURE() << "no file " << name;
        std::abort();
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<Row> tableOf(const std::string& name) {
    std::vector<Row> rows;
    std::vector<std::string> columns;
    std::istringstream lines(dataFile(name));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('#'))
            continue;
        std::vector<std::string> cells = cellsOf(line);
        if (columns.empty()) {
            columns = cells;
            continue;
        }
        cells.resize(columns.size());
        Row& row = rows.emplace_back();
        for (std::size_t column = 0; column < columns.size(); ++column)
            row[columns[column]] = cells[column];
    }
    return rows;
}

std::string replaced(std::string text, const std::string& part, const std::string& other) {
    auto at = text.find(part);
    if (at == text.npos) {
        ADD_FAILURE() << "no " << part;
        std::abort();
    }
    for (; at != text.npos; at = text.find(part, at + other.size()))
        text.replace(at, part.size(), other);
    return text;
}

std::int64_t shownUnits(const std::string& text) {
    std::string digits;
    for (const char c : text)
        if (c == '-' || (c >= '0' && c <= '9'))
            digits += c;
    return std::stoll(digits);
}

std::string shownCurrency(const std::string& text) {
    if (text.find("$") != text.npos)
        return "USD";
    return text.find("¥") != text.npos ? "JPY" : "EUR";
}

} // namespace bridge_test

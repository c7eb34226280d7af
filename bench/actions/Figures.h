#pragma once

#include <functional>
#include <string>
#include <vector>

// Rows for bench/table.py, and the time of one piece of work.

[[nodiscard]] double seconds(const std::function<void()>& work);
[[nodiscard]] double median(std::vector<double> values); // for a disk, whose fsync takes what it takes
[[nodiscard]] double least(const std::vector<double>& values);

struct Figure {
    std::string what;
    double ours = 0;      // seconds
    double yardstick = 0; // likewise
    std::string name;     // the yardstick's
    std::string bar;      // "-" where the figure is only told
};
void print(const Figure& figure);

[[noreturn]] void fail(const std::string& why);

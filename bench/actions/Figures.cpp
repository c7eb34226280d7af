#include "Figures.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

double seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double least(const std::vector<double>& values) {
    return *std::min_element(values.begin(), values.end());
}

void print(const Figure& figure) {
    const bool isLong = figure.ours >= 1e-3;
    const double scale = isLong ? 1e3 : 1e6;
    const char* unit = isLong ? "ms" : "us";
    std::printf("%s\t%.2f %s\t%.2f %s %s\t%.3f\t%s\n", figure.what.c_str(), figure.ours * scale, unit,
                figure.yardstick * scale, unit, figure.name.c_str(), figure.ours / figure.yardstick,
                figure.bar.c_str());
    std::fflush(stdout);
}

void fail(const std::string& why) {
    std::fprintf(stderr, "korvel_bench_actions: %s\n", why.c_str());
    std::exit(1);
}

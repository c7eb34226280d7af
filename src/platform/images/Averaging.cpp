#include "platform/images/Averaging.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace platform {

namespace {

// The old pixels, from `first` on, of which one new pixel is made: a share of each, 1 in all.
struct Share {
    int first = 0;
    std::vector<float> weights;
};

std::vector<Share> shares(int oldLength, int newLength) {
    std::vector<Share> result(static_cast<std::size_t>(newLength));
    const double step = static_cast<double>(oldLength) / newLength;
    for (int at = 0; at < newLength; ++at) {
        const double start = at * step, end = start + step;
        Share& share = result[static_cast<std::size_t>(at)];
        share.first = static_cast<int>(start);
        for (int old = share.first; old < oldLength && old < end; ++old) {
            const double covered = std::min(end, old + 1.0) - std::max(start, static_cast<double>(old));
            share.weights.push_back(static_cast<float>(covered / step));
        }
    }
    return result;
}

// One new row as wide as the old ones: each channel of their pixels.
void addRows(std::vector<float>& sums, const QImage& pixels, const Share& share) {
    std::fill(sums.begin(), sums.end(), 0.0F);
    for (std::size_t row = 0; row < share.weights.size(); ++row) {
        const uchar* line = pixels.constScanLine(share.first + static_cast<int>(row));
        const float weight = share.weights[row];
        for (std::size_t at = 0; at < sums.size(); ++at)
            sums[at] += weight * static_cast<float>(line[at]);
    }
}

void narrowRow(uchar* line, const std::vector<float>& sums, const std::vector<Share>& columns) {
    for (const Share& share : columns) {
        float channels[4] = {0.5F, 0.5F, 0.5F, 0.5F};
        const float* sum = sums.data() + std::size_t{4} * static_cast<std::size_t>(share.first);
        for (const float weight : share.weights) {
            for (int channel = 0; channel < 4; ++channel)
                channels[channel] += weight * sum[channel];
            sum += 4;
        }
        for (const float channel : channels)
            *line++ = static_cast<uchar>(channel);
    }
}

} // namespace

QImage averaged(const QImage& pixels, const QSize& size) {
    const auto columns = shares(pixels.width(), size.width());
    const auto rows = shares(pixels.height(), size.height());
    std::vector<float> sums(std::size_t{4} * static_cast<std::size_t>(pixels.width()));
    QImage result(size, pixels.format());
    for (int y = 0; y < size.height(); ++y) {
        addRows(sums, pixels, rows[static_cast<std::size_t>(y)]);
        narrowRow(result.scanLine(y), sums, columns);
    }
    return result;
}

} // namespace platform

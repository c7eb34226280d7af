#include "platform/images/Averaging.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace platform {

namespace {

// Weights are shares of 2^14: they fit 16 bits, in which the compiler multiplies many bytes at once.
constexpr int wholeBits = 14;

// The channels of one pixel, handled at once.
using Channels = float __attribute__((vector_size(16)));

// Of which old pixels each new one is made. Each is given equally many, some with no weight: loops of one
// length are what a processor foresees. The weights of one add up to the whole exactly, so that a plain area
// keeps its colour.
class Shares final {
public:
    Shares(int oldLength, int newLength)
        : taps_(std::min(oldLength, oldLength / newLength + 2))
        , weights_(static_cast<std::size_t>(taps_) * static_cast<std::size_t>(newLength)) {
        const double step = static_cast<double>(oldLength) / newLength;
        for (int at = 0; at < newLength; ++at) {
            const double start = at * step;
            const int first = std::min(static_cast<int>(start), oldLength - taps_);
            firsts_.push_back(first);
            std::int16_t* weight = weights_.data() + std::ptrdiff_t{taps_} * at;
            int given = 0;
            for (int tap = 0; tap < taps_; ++tap) {
                const double covered = std::clamp((first + tap + 1 - start) / step, 0.0, 1.0);
                const int upToHere = static_cast<int>(std::lround(covered * (1 << wholeBits)));
                *weight++ = static_cast<std::int16_t>(upToHere - given);
                given = upToHere;
            }
            weight[-1] = static_cast<std::int16_t>(weight[-1] + (1 << wholeBits) - given);
        }
        for (const std::int16_t weight : weights_)
            shares_.insert(shares_.end(), 4, std::ldexp(static_cast<float>(weight), -wholeBits));
    }

    [[nodiscard]] int count() const { return static_cast<int>(firsts_.size()); }
    [[nodiscard]] int taps() const { return taps_; }
    [[nodiscard]] int first(int at) const { return firsts_[static_cast<std::size_t>(at)]; }
    [[nodiscard]] const std::int16_t* weights(int at) const {
        return weights_.data() + std::ptrdiff_t{taps_} * at;
    }
    // The same as fractions of 1, which they are exactly, each four times: once for each channel.
    [[nodiscard]] const float* shares(int at) const {
        return shares_.data() + std::ptrdiff_t{4} * taps_ * at;
    }

private:
    int taps_;
    std::vector<int> firsts_;
    std::vector<std::int16_t> weights_;
    std::vector<float> shares_;
};

// One new row, as wide as the old ones still: each channel of their pixels, times the whole.
void addRows(std::vector<std::int32_t>& sums, const QImage& pixels, const Shares& rows, int at) {
    std::fill(sums.begin(), sums.end(), 0);
    for (int tap = 0; tap < rows.taps(); ++tap) {
        const std::int16_t weight = rows.weights(at)[tap];
        if (weight == 0)
            continue;
        const uchar* line = pixels.constScanLine(rows.first(at) + tap);
        for (std::size_t channel = 0; channel < sums.size(); ++channel)
            sums[channel] += std::int16_t{line[channel]} * weight;
    }
}

// The channels of the new row, a half added, so that cutting their fractions off rounds them.
void narrowRow(std::vector<float>& narrow, const std::vector<float>& wide, const Shares& columns) {
    float* result = narrow.data();
    for (int at = 0; at < columns.count(); ++at) {
        Channels average = {0.5F, 0.5F, 0.5F, 0.5F};
        const float* pixel = wide.data() + std::ptrdiff_t{4} * columns.first(at);
        const float* shares = columns.shares(at);
        for (int tap = 0; tap < columns.taps(); ++tap) {
            Channels old, share;
            std::memcpy(&old, pixel + std::ptrdiff_t{4} * tap, sizeof old);
            std::memcpy(&share, shares + std::ptrdiff_t{4} * tap, sizeof share);
            average += share * old;
        }
        std::memcpy(result, &average, sizeof average);
        result += 4;
    }
}

} // namespace

QImage averaged(const QImage& pixels, const QSize& size) {
    const Shares columns(pixels.width(), size.width());
    const Shares rows(pixels.height(), size.height());
    const auto channels = [](const QSize& image) {
        return std::size_t{4} * static_cast<std::size_t>(image.width());
    };
    std::vector<std::int32_t> sums(channels(pixels.size()));
    std::vector<float> wide(sums.size()), narrow(channels(size));
    QImage result(size, pixels.format());
    for (int y = 0; y < size.height(); ++y) {
        addRows(sums, pixels, rows, y);
        std::transform(sums.begin(), sums.end(), wide.begin(),
                       [](std::int32_t sum) { return static_cast<float>(sum) * (1.0F / (1 << wholeBits)); });
        narrowRow(narrow, wide, columns);
        std::transform(narrow.begin(), narrow.end(), result.scanLine(y),
                       [](float channel) { return static_cast<uchar>(static_cast<std::int32_t>(channel)); });
    }
    return result;
}

} // namespace platform

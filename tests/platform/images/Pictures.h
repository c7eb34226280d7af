#pragma once

#include <QImage>

#include <algorithm>
#include <cstdlib>

namespace platform {

constexpr QRgb red = 0xffff0000, green = 0xff00ff00, blue = 0xff0000ff, clear = 0;

[[nodiscard]] inline QImage plainPicture(int width, int height, QRgb color) {
    QImage picture(width, height, QImage::Format_ARGB32_Premultiplied);
    picture.fill(color);
    return picture;
}

// Whether two colours differ by no more than rounding in each channel.
[[nodiscard]] inline bool isNear(QRgb one, QRgb other, int tolerance = 2) {
    return std::abs(qRed(one) - qRed(other)) <= tolerance &&
           std::abs(qGreen(one) - qGreen(other)) <= tolerance &&
           std::abs(qBlue(one) - qBlue(other)) <= tolerance &&
           std::abs(qAlpha(one) - qAlpha(other)) <= tolerance;
}

struct Difference {
    int most = 0; // of any channel of any pixel
    double mean = 0;
};

// How two premultiplied pictures of one size differ.
[[nodiscard]] inline Difference differenceOf(const QImage& one, const QImage& other) {
    if (one.size() != other.size())
        return {255, 255};
    Difference difference;
    double sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        const auto* a = reinterpret_cast<const QRgb*>(one.constScanLine(y));
        const auto* b = reinterpret_cast<const QRgb*>(other.constScanLine(y));
        for (int x = 0; x < one.width(); ++x) {
            for (const int shift : {0, 8, 16, 24}) {
                const int channel =
                    std::abs(static_cast<int>(a[x] >> shift & 0xff) - static_cast<int>(b[x] >> shift & 0xff));
                difference.most = std::max(difference.most, channel);
                sum += channel;
            }
        }
    }
    difference.mean = sum / (4.0 * one.width() * one.height());
    return difference;
}

} // namespace platform

#pragma once

#include <QImage>

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

} // namespace platform

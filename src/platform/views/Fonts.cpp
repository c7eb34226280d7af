#include "platform/views/Fonts.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// Qt cannot make a font of size 0.
constexpr double smallestSize = 0.01;

double dotsPerInch() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchY() : 96.0;
}

} // namespace

QFont systemFont(double size) {
    QFont font = QGuiApplication::font();
    const double pixels = std::max(size, smallestSize);
    if (pixels == std::floor(pixels)) {
        font.setPixelSize(static_cast<int>(pixels));
    } else {
        font.setPointSizeF(pixels * 72.0 / dotsPerInch());
    }
    return font;
}

QFont boldSystemFont(double size) {
    QFont font = systemFont(size);
    font.setBold(true);
    return font;
}

ExactFont exactFont(const QFont& font) {
    ExactFont exact{font, 1};
    if (font.pixelSize() <= 0) {
        const double pixels = font.pointSizeF() * dotsPerInch() / 72.0;
        exact.font.setPixelSize(std::max(1, static_cast<int>(std::ceil(pixels))));
        exact.scale = pixels / exact.font.pixelSize();
    }
    return exact;
}

} // namespace platform

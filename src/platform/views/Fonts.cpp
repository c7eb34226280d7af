#include "platform/views/Fonts.h"

#include "platform/views/FontFamily.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// A font of no size at all cannot be made.
constexpr double smallestSize = 0.01;

double dotsPerInch() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchY() : 96.0;
}

// Whether a font has all of a text by itself: Latin letters, which every general font has, and such signs
// (dashes, currencies, the minus) as it is found to have. Other scripts are never asked for.
bool isCovered(const QString& text, const QFont& alone) {
    const auto isLatin = [](QChar c) { return c.unicode() < 0x100; };
    const auto isSign = [](QChar c) { return c.unicode() >= 0x2000 && c.unicode() < 0x2300; };
    if (std::all_of(text.begin(), text.end(), isLatin))
        return true;
    const QFontMetricsF metrics(alone);
    return std::all_of(text.begin(), text.end(),
                       [&](QChar c) { return isLatin(c) || (isSign(c) && metrics.inFont(c)); });
}

} // namespace

QFont systemFont(double size) {
    QFont font = QGuiApplication::font();
    font.setFamily(concreteFontFamily(font.family()));
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

ExactFont exactFont(const QFont& font, const QString& text) {
    ExactFont exact{font, 1};
    if (font.pixelSize() <= 0) {
        const double pixels = font.pointSizeF() * dotsPerInch() / 72.0;
        exact.font.setPixelSize(std::max(1, static_cast<int>(std::ceil(pixels))));
        exact.scale = pixels / exact.font.pixelSize();
    }
    QFont alone = exact.font;
    alone.setStyleStrategy(QFont::NoFontMerging);
    if (isCovered(text, alone))
        exact.font = alone;
    return exact;
}

} // namespace platform

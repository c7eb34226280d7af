#include "platform/views/Fonts.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// A font of no size at all cannot be made.
constexpr double smallestSize = 0.01;

} // namespace

QFont systemFont(double size) {
    QFont font = QGuiApplication::font();
    const double pixels = std::max(size, smallestSize);
    if (pixels == std::floor(pixels)) {
        font.setPixelSize(static_cast<int>(pixels));
    } else {
        const QScreen* screen = QGuiApplication::primaryScreen();
        const double dpi = screen ? screen->logicalDotsPerInchY() : 96.0;
        font.setPointSizeF(pixels * 72.0 / dpi);
    }
    return font;
}

QFont boldSystemFont(double size) {
    QFont font = systemFont(size);
    font.setBold(true);
    return font;
}

double textWidth(const QString& text, const QFont& font) {
    return QFontMetricsF(font).horizontalAdvance(singleLine(text));
}

QString singleLine(const QString& text) {
    const auto breaks = [](QChar c) {
        return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QLatin1Char('\t') ||
               c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
    };
    if (std::none_of(text.begin(), text.end(), breaks))
        return text;
    QString line = text;
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    std::replace_if(line.begin(), line.end(), breaks, QLatin1Char(' '));
    return line;
}

} // namespace platform

#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

namespace platform {

// The desktop's general font at a size in points (device-independent pixels), which may be a fraction.
[[nodiscard]] QFont systemFont(double size);
[[nodiscard]] QFont boldSystemFont(double size);

// How a text is drawn and measured in a font. Qt rounds a size to whole pixels when it loads a font, so a
// fractional one is set in the next whole size and scaled down. Fonts to fall back on are looked up, which
// takes milliseconds, only for a text that needs them.
struct ExactFont {
    QFont font;
    double scale = 1;
};
[[nodiscard]] ExactFont exactFont(const QFont& font, const QString& text);

// The width in points that a text takes on one line, whatever its length; line breaks count as spaces.
[[nodiscard]] double textWidth(const QString& text, const QFont& font);

// A text as one line shows it: line breaks and tabs are spaces.
[[nodiscard]] QString singleLine(const QString& text);

} // namespace platform

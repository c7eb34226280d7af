#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

namespace platform {

// The desktop's general font at a size in points (device-independent pixels), which may be a fraction.
[[nodiscard]] QFont systemFont(double size);
[[nodiscard]] QFont boldSystemFont(double size);

// Qt rounds a font's size to whole pixels when it loads it, so a text of a fractional size is set in the next
// whole one and scaled down as it is drawn and measured.
struct ExactFont {
    QFont font;
    double scale = 1;
};
[[nodiscard]] ExactFont exactFont(const QFont& font);

// The width in points that a text takes on one line, whatever its length; line breaks count as spaces.
[[nodiscard]] double textWidth(const QString& text, const QFont& font);

// A text as one line shows it: line breaks and tabs are spaces.
[[nodiscard]] QString singleLine(const QString& text);

} // namespace platform

#pragma once

#include <QFont>
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

} // namespace platform

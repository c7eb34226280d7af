#pragma once

#include <QFont>

namespace platform {

// The desktop's general font at a size in points (device-independent pixels), which may be a fraction.
[[nodiscard]] QFont systemFont(double size);
[[nodiscard]] QFont boldSystemFont(double size);

// How a font is drawn and measured. Qt rounds a size to whole pixels when it loads a font, so a fractional
// one is set in the next whole size and scaled down.
struct ExactFont {
    QFont font;
    double scale = 1;
};
[[nodiscard]] ExactFont exactFont(const QFont& font);

} // namespace platform

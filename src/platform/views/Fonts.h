#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

namespace platform {

// The desktop's general font at a size in points (device-independent pixels), which may be a fraction.
[[nodiscard]] QFont systemFont(double size);
[[nodiscard]] QFont boldSystemFont(double size);

// The width in points that a text takes on one line, whatever its length; line breaks count as spaces.
[[nodiscard]] double textWidth(const QString& text, const QFont& font);

// A text as one line shows it: line breaks and tabs are spaces.
[[nodiscard]] QString singleLine(const QString& text);

} // namespace platform

#pragma once

#include "panel/Backdrop.h"

#include <QColor>

class QPainter;
class QRect;

namespace panel {

// Of a sheet that nothing shines through.
inline constexpr QColor sheetColor(29, 33, 38);

// Paints what the list stands on, with a hairline around it: with round corners and a little translucent, or
// square.
void paintSheet(QPainter& painter, Backdrop backdrop, const QRect& sheet);

} // namespace panel

#include "panel/Sheet.h"

#include <QPainter>
#include <QRegion>

namespace panel {

namespace {

constexpr double cornerRadius = 14;
constexpr QColor translucentColor(29, 33, 38, 242);
constexpr QColor edgeColor(255, 255, 255, 26);

// Qt divides a fill of more lines among threads, which it starts for that.
constexpr int linesAtOnce = 60;

void fillInBands(QPainter& painter, const QRect& rect, const QColor& color) {
    for (int top = rect.top(); top <= rect.bottom(); top += linesAtOnce)
        painter.fillRect(QRect(rect.left(), top, rect.width(), linesAtOnce) & rect, color);
}

// Paints the panel's background with its hairline. Only the corners are antialiased, since Qt would use
// threads to blend the whole of a translucent window.
void paintRoundSheet(QPainter& painter, const QRect& sheet) {
    constexpr int corner = static_cast<int>(cornerRadius) + 1;
    const QRect middle = sheet.adjusted(corner, 0, -corner, 0);
    const QRect sides = sheet.adjusted(0, corner, 0, -corner);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    fillInBands(painter, middle, translucentColor);
    fillInBands(painter, sides, translucentColor);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.fillRect(QRect(middle.left(), sheet.top(), middle.width(), 1), edgeColor);
    painter.fillRect(QRect(middle.left(), sheet.bottom(), middle.width(), 1), edgeColor);
    fillInBands(painter, QRect(sheet.left(), sides.top(), 1, sides.height()), edgeColor);
    fillInBands(painter, QRect(sheet.right(), sides.top(), 1, sides.height()), edgeColor);

    painter.setClipRegion(QRegion(sheet) - middle - sides);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(translucentColor);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(sheet, cornerRadius, cornerRadius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(edgeColor, 1));
    painter.drawRoundedRect(QRectF(sheet).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

// No compositor makes a shadow around it: a hairline sets it off from a dark window behind it.
void paintSquareSheet(QPainter& painter, const QRect& sheet) {
    painter.fillRect(sheet, sheetColor);
    const QRect inner = sheet.adjusted(1, 1, -1, -1);
    for (const QRect& side : QRegion(sheet) - inner)
        painter.fillRect(side, edgeColor);
}

} // namespace

void paintSheet(QPainter& painter, Backdrop backdrop, const QRect& sheet) {
    if (backdrop == Backdrop::SquareOpaque)
        paintSquareSheet(painter, sheet);
    else
        paintRoundSheet(painter, sheet);
}

} // namespace panel

// Draws all glyphs of the bridge as the rows of a list show them, with their names, into a PNG file;
// scripts/gallery calls it.
#include "bridge/icons/GlyphFiles.h"
#include "exchange/TodayWidgetLogic.h"
#include "panel/Sheet.h"
#include "panel/Snapshot.h"
#include "platform/views/ImageView.h"
#include "support/Containers.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr int columns = 8, cellWidth = 76, cellHeight = 68, margin = 12;
constexpr QRect iconPlace(19, 6, 38, 38); // in its cell, of the size that a row has for it

void drawCell(QPainter& painter, const bridge::GlyphFile& glyph, const QPoint& at) {
    const QString name = QString::fromUtf8(glyph.name.data(), static_cast<qsizetype>(glyph.name.size()));
    platform::ImageView view;
    view.resize(iconPlace.size());
    view.setImage(TodayWidgetLogic::imageByName(name, QRectF(view.rect())));
    painter.save();
    painter.translate(at + iconPlace.topLeft());
    view.render(&painter, {}, {}, QWidget::DrawChildren);
    painter.restore();
    painter.drawText(QRect(at.x(), at.y() + 46, cellWidth, 18), Qt::AlignHCenter, name);
}

} // namespace

// OUT.png SCALE
int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: korvel_glyph_sheet OUT.png SCALE\n", stderr);
        return 2;
    }
    panel::Snapshot snapshot;
    snapshot.scale = std::strtod(argv[2], nullptr);
    panel::prepareSnapshot(snapshot);
    int count = 1;
    QApplication application(count, argv);
    const auto glyphs = bridge::glyphFiles();
    const support::Containers container;
    for (const auto& glyph : glyphs)
        container.write("-/icons/" + std::string(glyph.name) + ".png", glyph.png);

    const int rows = (static_cast<int>(glyphs.size()) + columns - 1) / columns;
    const QSize size(columns * cellWidth + 2 * margin, rows * cellHeight + 2 * margin);
    QImage sheet((QSizeF(size) * snapshot.scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    sheet.setDevicePixelRatio(snapshot.scale);
    QPainter painter(&sheet);
    panel::paintSheet(painter, panel::Backdrop::SquareOpaque, QRect({}, size));
    painter.setPen(Qt::white);
    QFont small = QApplication::font();
    small.setPixelSize(11);
    painter.setFont(small);
    for (int index = 0; index < static_cast<int>(glyphs.size()); ++index)
        drawCell(painter, glyphs[static_cast<std::size_t>(index)],
                 {margin + index % columns * cellWidth, margin + index / columns * cellHeight});
    painter.end();
    return sheet.save(QString::fromLocal8Bit(argv[1]), "PNG") ? 0 : 1;
}

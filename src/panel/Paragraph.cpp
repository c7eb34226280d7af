#include "panel/Paragraph.h"

#include <QStyle>

#include <cmath>

namespace panel {

namespace {

constexpr double lineSpacing = 1.15; // of a font's own height

} // namespace

Paragraph::Paragraph(const QString& text, const QFont& font, double width, Qt::LayoutDirection direction)
    : layout_(text, font) {
    if (text.isEmpty())
        return;
    QTextOption option(QStyle::visualAlignment(direction, Qt::AlignLeading));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(direction);
    layout_.setTextOption(option);
    layout_.beginLayout();
    for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height_});
        height_ += std::ceil(line.height() * lineSpacing);
    }
    layout_.endLayout();
}

void Paragraph::draw(QPainter& painter, QPointF topLeft) const {
    layout_.draw(&painter, topLeft);
}

} // namespace panel

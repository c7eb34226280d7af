#include "platform/views/TextLine.h"

#include "platform/views/Fonts.h"

#include <QPainter>

#include <algorithm>

namespace platform {

TextLine::TextLine(const QString& text, const QFont& font) {
    const QString line = singleLine(text);
    const ExactFont exact = exactFont(font);
    scale_ = exact.scale;
    layout_.setText(line);
    layout_.setFont(exact.font);
    layout_.setCacheEnabled(true);
    layout_.beginLayout();
    layout_.createLine();
    layout_.endLayout();
    const QTextLine only = layout_.lineAt(0);
    width_ = only.isValid() ? only.horizontalAdvance() * scale_ : 0;
}

void TextLine::draw(QPainter& painter, const QRectF& rect, Qt::Alignment side) const {
    const QTextLine line = layout_.lineAt(0);
    if (!line.isValid())
        return;
    painter.save();
    painter.scale(scale_, scale_);
    const QRectF room(rect.topLeft() / scale_, rect.size() / scale_);
    const double spare = room.width() - line.horizontalAdvance();
    const double indent = side & Qt::AlignRight ? spare : side & Qt::AlignHCenter ? spare / 2 : 0;
    const double height = line.ascent() + line.descent(); // its height() is a whole number
    line.draw(&painter, room.topLeft() + QPointF(indent, (room.height() - height) / 2));
    painter.restore();
}

double textWidth(const QString& text, const QFont& font) {
    return TextLine(text, font).width();
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

#include "platform/views/Label.h"

#include "platform/views/Fonts.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// No line of a panel shows more than this many characters; longer texts are cut before they are shaped, since
// a megabyte would take long and show nothing more.
constexpr qsizetype longestShown = 2000;

QString shownText(const QString& text, const QFont& font, double width, Label::LineBreakMode mode) {
    const QString line = singleLine(text.size() > longestShown ? text.left(longestShown) : text);
    const QFontMetricsF metrics(font);
    if (mode == Label::LineBreakMode::Clipping || metrics.horizontalAdvance(line) <= width)
        return line;
    return metrics.elidedText(line, Qt::ElideRight, width);
}

} // namespace

Label::Label(QWidget* parent)
    : View(parent) {}

void Label::setStringValue(const QString& text) {
    if (text_ == text)
        return;
    text_ = text;
    update();
}

void Label::setLabelFont(const QFont& font) {
    if (font_ == font)
        return;
    font_ = font;
    update();
}

void Label::setTextColor(const QColor& color) {
    if (color_ == color)
        return;
    color_ = color;
    update();
}

void Label::setLineBreakMode(LineBreakMode mode) {
    if (lineBreakMode_ == mode)
        return;
    lineBreakMode_ = mode;
    update();
}

void Label::setAlignment(Qt::Alignment alignment) {
    if (alignment_ == alignment)
        return;
    alignment_ = alignment;
    update();
}

void Label::sizeToFit() {
    const ExactFont exact = exactFont(font_, text_);
    const double height = std::ceil(QFontMetricsF(exact.font).height() * exact.scale);
    setFrame(QRectF(frame().topLeft(), QSizeF(std::ceil(textWidth(text_, font_)), height)));
}

AccessibleTraits Label::accessibleTraits() const {
    AccessibleTraits traits;
    traits.role = QAccessible::StaticText;
    traits.name = text_;
    return traits;
}

void Label::paintEvent(QPaintEvent*) {
    if (text_.isEmpty())
        return;
    QPainter painter(this);
    const ExactFont exact = exactFont(font_, text_);
    painter.scale(exact.scale, exact.scale);
    painter.setFont(exact.font);
    painter.setPen(color_);
    const QSizeF room = QSizeF(size()) / exact.scale;
    const QString shown = shownText(text_, exact.font, room.width(), lineBreakMode_);
    const auto alignment = QStyle::visualAlignment(layoutDirection(), alignment_);
    painter.drawText(QRectF(QPointF(), room),
                     static_cast<int>(alignment | Qt::TextSingleLine | Qt::AlignAbsolute), shown);
}

} // namespace platform

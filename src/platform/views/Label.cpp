#include "platform/views/Label.h"

#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include <cmath>

namespace platform {

namespace {

// No line of a panel shows more characters. Longer texts are cut before they are shaped, which would take
// long for a megabyte.
constexpr qsizetype longestShown = 2000;

bool isElided(const QString& head, const QFont& font, double width, Label::LineBreakMode mode) {
    return mode == Label::LineBreakMode::TruncatingTail && textWidth(head, font) > width;
}

TextLine shownLine(const QString& text, const QFont& font, double width, Label::LineBreakMode mode) {
    const QString head = text.left(longestShown);
    if (!isElided(head, font, width, mode))
        return TextLine(head, font);
    const ExactFont exact = exactFont(font);
    const QString elided =
        QFontMetricsF(exact.font).elidedText(singleLine(head), Qt::ElideRight, width / exact.scale);
    return TextLine(elided, font);
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
    const ExactFont exact = exactFont(font_);
    const double height = std::ceil(QFontMetricsF(exact.font).height() * exact.scale);
    setFrame(QRectF(frame().topLeft(), QSizeF(std::ceil(textWidth(text_, font_)), height)));
}

QString Label::toolTipText() const {
    return isElided(text_.left(longestShown), font_, width(), lineBreakMode_) ? text_ : QString();
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
    painter.setPen(color_);
    const TextLine line = shownLine(text_, font_, width(), lineBreakMode_);
    line.draw(painter, QRectF(rect()), QStyle::visualAlignment(layoutDirection(), alignment_));
}

} // namespace platform

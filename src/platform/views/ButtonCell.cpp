#include "platform/views/ButtonCell.h"

#include "platform/views/Button.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include <cmath>

namespace platform {

namespace {

constexpr double pressedAlpha = 0.5;

} // namespace

void AttributedString::draw(QPainter& painter, const QRectF& rect, Qt::LayoutDirection direction) const {
    painter.setFont(font);
    painter.setPen(foregroundColor);
    const QString shown = QFontMetricsF(font).elidedText(text, Qt::ElideRight, rect.width());
    const auto visual = QStyle::visualAlignment(direction, alignment);
    painter.drawText(rect, static_cast<int>(visual | Qt::AlignTop | Qt::AlignAbsolute | Qt::TextSingleLine),
                     shown);
}

void ButtonCell::highlight(bool flag, const QRectF&, Button& view) {
    view.setAlphaValue(flag ? pressedAlpha : 1);
}

void ButtonCell::drawImage(QPainter& painter, const Image& image, const QRectF& rect, Button&) {
    QRectF place({}, image.size());
    place.moveCenter(rect.center());
    place.moveTo(std::floor(place.x()), std::floor(place.y()));
    image.draw(painter, place);
}

QRectF ButtonCell::drawTitle(QPainter& painter, const AttributedString& title, const QRectF& rect,
                             Button& view) {
    if (title.isEmpty())
        return rect;
    painter.setFont(title.font);
    painter.setPen(title.foregroundColor);
    const QString shown = QFontMetricsF(title.font).elidedText(title.text, Qt::ElideRight, rect.width());
    painter.drawText(rect, static_cast<int>(Qt::AlignCenter | Qt::TextSingleLine), shown);
    Q_UNUSED(view)
    return rect;
}

} // namespace platform

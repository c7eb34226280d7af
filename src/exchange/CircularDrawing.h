#pragma once

#include <QRectF>
#include <QSizeF>

namespace exchange {

// Where a picture is drawn in a round icon of a size, both in points, y counting down. A tall or square
// picture covers the whole size. A wide one is scaled up to the width where it is narrower, but it is never
// shrunk and need not cover the height, on purpose: host applications rely on it.
// The picture has a width and a height.
[[nodiscard]] inline QRectF circularDrawingRect(const QSizeF& picture, const QSizeF& size) {
    QSizeF drawn = picture;
    if (picture.width() > picture.height()) {
        if (size.width() > picture.width())
            drawn = QSizeF(size.width(), picture.height() * size.width() / picture.width());
    } else {
        drawn = QSizeF(size.width(), picture.height() * size.width() / picture.width());
        if (size.height() > drawn.height())
            drawn = QSizeF(picture.width() * size.height() / picture.height(), size.height());
    }
    return {(size.width() - drawn.width()) * 0.5, (size.height() - drawn.height()) * 0.5, drawn.width(),
            drawn.height()};
}

} // namespace exchange

#include "platform/images/ImageSource.h"

#include <QPainter>

#include <algorithm>

namespace platform {

QSize wholePixels(const QSizeF& size) {
    return {std::max(1, qRound(size.width())), std::max(1, qRound(size.height()))};
}

void tintPixels(QImage& pixels, const QColor& color) {
    QPainter painter(&pixels);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(QRectF(pixels.rect()), color);
}

} // namespace platform

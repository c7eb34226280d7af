#include "platform/images/OvalPicture.h"

#include "platform/images/Averaging.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr qreal largestSide = 4096;
constexpr auto pixelFormat = QImage::Format_ARGB32_Premultiplied;

bool isDrawable(const QSizeF& pixels) {
    // Written so that NaN is refused too.
    return pixels.width() > 0 && pixels.height() > 0 && pixels.width() <= largestSide &&
           pixels.height() <= largestSide;
}

bool isFinite(const QRectF& rect) {
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width()) &&
           std::isfinite(rect.height());
}

QImage clearPixels(const QSizeF& size) {
    // A trifle less than a pixel over is a rounding error, not a pixel.
    constexpr qreal trifle = 1e-6;
    const auto whole = [](qreal length) { return std::max(1, static_cast<int>(std::ceil(length - trifle))); };
    QImage pixels(whole(size.width()), whole(size.height()), pixelFormat);
    pixels.fill(Qt::transparent);
    return pixels;
}

// At most its own size: averaged once (a painter, which looks at four pixels only, would skip most of them)
// and set on whole pixels.
void drawShrunk(QPainter& painter, const QRectF& drawing, const QImage& picture) {
    const QSize size(std::max(1, qRound(drawing.width())), std::max(1, qRound(drawing.height())));
    const QPoint position(qRound(drawing.x()), qRound(drawing.y()));
    const QImage shrunk = size == picture.size() ? picture : averaged(picture, size);
    painter.drawImage(QRectF(position, QSizeF(size)), shrunk, QRectF(shrunk.rect()));
}

// Larger than its own size: only the part that shows is handed on, for a strip a thousand times as tall as
// wide would be drawn beyond the painter's coordinates.
void drawGrown(QPainter& painter, const QRectF& drawing, const QImage& picture, const QRectF& canvas) {
    const qreal scaleX = drawing.width() / picture.width();
    const qreal scaleY = drawing.height() / picture.height();
    const QRectF shown = drawing.intersected(canvas).translated(-drawing.topLeft());
    const QRect part =
        QRectF(shown.x() / scaleX, shown.y() / scaleY, shown.width() / scaleX, shown.height() / scaleY)
            .toAlignedRect()
            .adjusted(-2, -2, 2, 2) // what the smooth scaling looks at
            .intersected(picture.rect());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(drawing.x() + part.x() * scaleX, drawing.y() + part.y() * scaleY,
                             part.width() * scaleX, part.height() * scaleY),
                      picture, QRectF(part));
}

} // namespace

Image ovalPicture(const Image& picture, const QRectF& drawing, const QSizeF& size, qreal ratio) {
    const QSizeF pixelSize = size * ratio;
    const QRectF target(drawing.topLeft() * ratio, drawing.size() * ratio);
    if (!picture || !isDrawable(pixelSize) || !isFinite(target))
        return {};

    QImage canvas = clearPixels(pixelSize);
    const QImage source = picture.pixels(ratio);
    QPainter composing(&canvas);
    if (target.width() <= source.width() && target.height() <= source.height())
        drawShrunk(composing, target, source);
    else
        drawGrown(composing, target, source, QRectF(canvas.rect()));
    composing.end();

    // A clip would leave a ragged edge; an oval that the picture is painted into has a smooth one.
    QImage oval = clearPixels(pixelSize);
    QPainter cutting(&oval);
    cutting.setRenderHint(QPainter::Antialiasing);
    cutting.setPen(Qt::NoPen);
    cutting.setBrush(Qt::white);
    cutting.drawEllipse(QRectF(QPointF(0, 0), pixelSize));
    cutting.setCompositionMode(QPainter::CompositionMode_SourceIn);
    cutting.drawImage(0, 0, canvas);
    cutting.end();
    oval.setDevicePixelRatio(ratio);
    return Image(std::move(oval), size);
}

} // namespace platform

#include "platform/images/OvalPicture.h"

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

// A picture at half its size or less is scaled as a whole: a painter interpolates between four pixels and
// would skip the others. Its edges are set on whole pixels.
QImage scaledOnCanvas(const QImage& picture, const QRectF& drawing, QImage canvas) {
    const QRect place(qRound(drawing.x()), qRound(drawing.y()), std::max(1, qRound(drawing.width())),
                      std::max(1, qRound(drawing.height())));
    QImage scaled = picture.scaled(place.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(1);
    QPainter painter(&canvas);
    painter.drawImage(place.topLeft(), scaled);
    painter.end();
    return canvas;
}

// A picture at more than half its size is drawn by a painter, and only the part of it that shows: a strip a
// thousand times as tall as wide would reach beyond the painter's coordinates.
QImage interpolatedOnCanvas(const QImage& picture, const QRectF& drawing, QImage canvas) {
    const qreal scaleX = drawing.width() / picture.width();
    const qreal scaleY = drawing.height() / picture.height();
    const QRectF shown = drawing.intersected(QRectF(canvas.rect())).translated(-drawing.topLeft());
    const QRect part =
        QRectF(shown.x() / scaleX, shown.y() / scaleY, shown.width() / scaleX, shown.height() / scaleY)
            .toAlignedRect()
            .adjusted(-2, -2, 2, 2) // what the smooth scaling looks at
            .intersected(picture.rect());
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(drawing.x() + part.x() * scaleX, drawing.y() + part.y() * scaleY,
                             part.width() * scaleX, part.height() * scaleY),
                      picture, QRectF(part));
    painter.end();
    return canvas;
}

// The part of a picture within the oval that fills a size (pixels). It is composed with an oval rather than
// clipped, since a clip has a ragged edge.
QImage cutOut(const QImage& picture, const QSizeF& size) {
    QImage oval = clearPixels(size);
    QPainter painter(&oval);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(QPointF(0, 0), size));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.drawImage(0, 0, picture);
    painter.end();
    return oval;
}

} // namespace

Image ovalPicture(const Image& picture, const QRectF& drawing, const QSizeF& size, qreal ratio) {
    const QSizeF pixelSize = size * ratio;
    const QRectF target(drawing.topLeft() * ratio, drawing.size() * ratio);
    if (!picture || !isDrawable(pixelSize) || !isFinite(target))
        return {};

    const QImage source = picture.pixels(ratio);
    const bool isHalved = target.width() * 2 <= source.width() && target.height() * 2 <= source.height();
    QImage oval = cutOut(isHalved ? scaledOnCanvas(source, target, clearPixels(pixelSize))
                                  : interpolatedOnCanvas(source, target, clearPixels(pixelSize)),
                         pixelSize);
    oval.setDevicePixelRatio(ratio);
    return Image(std::move(oval), size);
}

} // namespace platform

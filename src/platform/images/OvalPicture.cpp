#include "platform/images/OvalPicture.h"

#include "platform/images/ImageSource.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr qreal largestSide = 4096;
constexpr int sideReadWhole = 256;
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

QSize canvasSize(const QSizeF& size) {
    // A trifle less than a pixel over is a rounding error, not a pixel.
    constexpr qreal trifle = 1e-6;
    const auto whole = [](qreal length) { return std::max(1, static_cast<int>(std::ceil(length - trifle))); };
    return {whole(size.width()), whole(size.height())};
}

QImage clearPixels(const QSizeF& size) {
    QImage pixels(canvasSize(size), pixelFormat);
    pixels.fill(Qt::transparent);
    return pixels;
}

// Whether a picture is drawn at half its size or less.
bool isHalved(const QSize& picture, const QSizeF& drawn) {
    return drawn.width() * 2 <= picture.width() && drawn.height() * 2 <= picture.height();
}

// A picture for drawing at half its size or less: a painter interpolates between four pixels and would skip
// the others.
QImage scaledDown(const QImage& picture, const QSizeF& size) {
    QImage scaled = picture.scaled(wholePixels(size), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(1);
    return scaled;
}

// The pixels of a picture that show on a canvas when the whole picture is drawn into a rectangle.
QRect shownPart(const QSize& picture, const QRectF& drawing, const QSize& canvas) {
    const qreal scaleX = drawing.width() / picture.width();
    const qreal scaleY = drawing.height() / picture.height();
    const QRectF shown = drawing.intersected(QRectF(QRect({}, canvas))).translated(-drawing.topLeft());
    return QRectF(shown.x() / scaleX, shown.y() / scaleY, shown.width() / scaleX, shown.height() / scaleY)
        .toAlignedRect()
        .adjusted(-2, -2, 2, 2) // what the smooth scaling looks at
        .intersected(QRect({}, picture));
}

// A painter moves a picture that it does not scale by whole pixels only. So it is told to scale the picture,
// by nothing that shows, where that has to be moved by less.
qreal scaleAt(const QPointF& place) {
    constexpr qreal imperceptible = 1e-9;
    return place == QPointF(place.toPoint()) ? 1 : 1 + imperceptible;
}

// Draws only the part of a picture that shows: a strip a thousand times as tall as wide would reach beyond
// the painter's coordinates.
QImage drawnOnCanvas(const QImage& picture, const QRectF& drawing, QImage canvas) {
    const qreal scaleX = drawing.width() / picture.width();
    const qreal scaleY = drawing.height() / picture.height();
    const QRect part = shownPart(picture.size(), drawing, canvas.size());
    const QPointF place = drawing.topLeft() + QPointF(part.x() * scaleX, part.y() * scaleY);
    const QSizeF size(part.width() * scaleX, part.height() * scaleY);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::Antialiasing); // for edges between two pixels
    painter.drawImage(QRectF(place, size * scaleAt(place)), picture, QRectF(part));
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
    const QRectF place = placeOfPart(picture.part(), picture.size(), drawing);
    const QRectF target(place.topLeft() * ratio, place.size() * ratio);
    if (!picture || !isDrawable(pixelSize) || !isFinite(target))
        return {};

    const QImage source = picture.pixels(ratio);
    const QImage near = isHalved(source.size(), target.size()) ? scaledDown(source, target.size()) : source;
    QImage oval = cutOut(drawnOnCanvas(near, target, clearPixels(pixelSize)), pixelSize);
    oval.setDevicePixelRatio(ratio);
    return Image(std::move(oval), size);
}

KeptPixels pixelsShownInOval(const QSize& picture, const QRectF& drawing, const QSizeF& size, qreal ratio) {
    if (isWithinSquare(picture, sideReadWhole))
        return allPixels(picture);
    const QSizeF pixelSize = size * ratio;
    const QRectF target(drawing.topLeft() * ratio, drawing.size() * ratio);
    const KeptPixels none{QSize(1, 1), QRect(0, 0, 1, 1)};
    if (!isDrawable(pixelSize) || !isFinite(target))
        return none;
    const QSize scaled = isHalved(picture, target.size()) ? wholePixels(target.size()) : picture;
    const QRect part = shownPart(scaled, target, canvasSize(pixelSize));
    return part.isEmpty() ? none : KeptPixels{scaled, part};
}

} // namespace platform

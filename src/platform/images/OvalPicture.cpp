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
// and set on whole pixels. The usual picture, a square, is all of the canvas.
QImage shrunkOnCanvas(const QImage& picture, const QRectF& drawing, QImage canvas) {
    const QRect place(qRound(drawing.x()), qRound(drawing.y()), std::max(1, qRound(drawing.width())),
                      std::max(1, qRound(drawing.height())));
    QImage shrunk = place.size() == picture.size() ? picture : averaged(picture, place.size());
    shrunk.setDevicePixelRatio(1);
    if (place == canvas.rect())
        return shrunk;
    QPainter painter(&canvas);
    painter.drawImage(place.topLeft(), shrunk);
    painter.end();
    return canvas;
}

// Larger than its own size: only the part that shows is handed on, for a strip a thousand times as tall as
// wide would be drawn beyond the painter's coordinates.
QImage grownOnCanvas(const QImage& picture, const QRectF& drawing, QImage canvas) {
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

// The oval that fills a size (pixels), white with a smooth edge. The last one is kept: all rows' are of one
// size.
const QImage& ovalMask(const QSizeF& size) {
    static QImage mask;
    static QSizeF maskSize;
    if (mask.isNull() || maskSize != size) {
        mask = clearPixels(size);
        maskSize = size;
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawEllipse(QRectF(QPointF(0, 0), size));
    }
    return mask;
}

// One premultiplied channel after another by an alpha, divided by 255 and rounded.
QRgb faded(QRgb pixel, unsigned alpha) {
    const auto channel = [&](unsigned shift) {
        const unsigned product = ((pixel >> shift) & 0xff) * alpha + 128;
        return ((product + (product >> 8)) >> 8) << shift;
    };
    return channel(24) | channel(16) | channel(8) | channel(0);
}

// Only at its edge is there anything to reckon, which a painter would do everywhere.
void cutOut(QImage& pixels, const QImage& mask) {
    for (int y = 0; y < pixels.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(pixels.scanLine(y));
        const auto* alphas = reinterpret_cast<const QRgb*>(mask.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x)
            if (const unsigned alpha = alphas[x] >> 24; alpha != 255)
                line[x] = alpha == 0 ? 0 : faded(line[x], alpha);
    }
}

} // namespace

Image ovalPicture(const Image& picture, const QRectF& drawing, const QSizeF& size, qreal ratio) {
    const QSizeF pixelSize = size * ratio;
    const QRectF target(drawing.topLeft() * ratio, drawing.size() * ratio);
    if (!picture || !isDrawable(pixelSize) || !isFinite(target))
        return {};

    const QImage source = picture.pixels(ratio);
    const bool shrinks = target.width() <= source.width() && target.height() <= source.height();
    QImage oval = shrinks ? shrunkOnCanvas(source, target, clearPixels(pixelSize))
                          : grownOnCanvas(source, target, clearPixels(pixelSize));
    // A clip would leave a ragged edge; the oval that the picture is cut out with has a smooth one.
    cutOut(oval, ovalMask(pixelSize));
    oval.setDevicePixelRatio(ratio);
    return Image(std::move(oval), size);
}

} // namespace platform

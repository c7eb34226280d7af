#include "platform/images/Image.h"

#include "platform/images/ImageSource.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTransform>

#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr auto pixelFormat = QImage::Format_ARGB32_Premultiplied;

// Whether pixels fill an area of the device without being scaled.
bool fits(const QSize& pixels, const QSizeF& devicePixels) {
    return std::abs(pixels.width() - devicePixels.width()) < 1 &&
           std::abs(pixels.height() - devicePixels.height()) < 1;
}

class PixelSource final : public Image::Source {
public:
    PixelSource(QImage pixels, const QSizeF& size, const QRectF& part)
        : pixels_(std::move(pixels))
        , size_(size)
        , part_(part) {}

    QSizeF size() const override { return size_; }
    QRectF part() const override { return part_; }
    QImage pixels(qreal) const override { return pixels_; }

    // Shrunk pixels are kept, since the same view draws them again and again at one size.
    QImage pixelsFilling(const QSizeF& devicePixels) const override {
        const bool shrinks =
            devicePixels.width() < pixels_.width() && devicePixels.height() < pixels_.height();
        if (!shrinks || fits(pixels_.size(), devicePixels))
            return pixels_;
        const QSize wanted = wholePixels(devicePixels);
        if (shrunk_.size() != wanted)
            shrunk_ = pixels_.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return shrunk_;
    }

    std::shared_ptr<const Image::Source> tinted(const QColor& color) const override {
        QImage copy = pixels_;
        tintPixels(copy, color);
        return std::make_shared<PixelSource>(std::move(copy), size_, part_);
    }

private:
    QImage pixels_;
    QSizeF size_;
    QRectF part_;
    mutable QImage shrunk_;
};

void drawScaled(QPainter& painter, const QRectF& rect, const QImage& pixels) {
    const bool smooth = painter.testRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(rect, pixels, QRectF(pixels.rect()));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
}

void drawUnscaled(QPainter& painter, const QPointF& devicePosition, const QImage& pixels) {
    const QPointF onPixels(std::floor(devicePosition.x() + 0.5), std::floor(devicePosition.y() + 0.5));
    const QRectF rect = painter.deviceTransform().inverted().mapRect(QRectF(onPixels, QSizeF(pixels.size())));
    const bool smooth = painter.testRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(rect, pixels, QRectF(pixels.rect()));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
}

} // namespace

Image::Image(QImage pixels) {
    const QSizeF size = QSizeF(pixels.size()) / pixels.devicePixelRatio();
    *this = Image(std::move(pixels), size);
}

Image::Image(QImage pixels, QSizeF size)
    : Image(std::move(pixels), size, QRectF({}, size)) {}

Image::Image(QImage pixels, QSizeF size, QRectF part) {
    if (!pixels.isNull())
        source_ = std::make_shared<PixelSource>(std::move(pixels).convertToFormat(pixelFormat), size, part);
}

Image::Image(std::shared_ptr<const Source> source)
    : source_(std::move(source)) {}

QSizeF Image::size() const {
    return source_ ? source_->size() : QSizeF(0, 0);
}

QRectF Image::part() const {
    return source_ ? source_->part() : QRectF();
}

Image Image::tinted(const QColor& color) const {
    return source_ ? Image(source_->tinted(color)) : Image();
}

QImage Image::pixels(qreal ratio) const {
    return source_ ? source_->pixels(ratio) : QImage();
}

void Image::draw(QPainter& painter, const QRectF& rect) const {
    if (!source_ || !(rect.width() > 0) || !(rect.height() > 0))
        return;
    const QRectF place = placeOfPart(part(), size(), rect);
    const QTransform transform = painter.deviceTransform();
    const QRectF device = transform.mapRect(place);
    const QImage pixels = source_->pixelsFilling(device.size());
    const bool upright =
        transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0;
    if (upright && fits(pixels.size(), device.size()))
        drawUnscaled(painter, device.topLeft(), pixels);
    else
        drawScaled(painter, place, pixels);
}

QRectF placeOfPart(const QRectF& part, const QSizeF& size, const QRectF& rect) {
    if (part == QRectF({}, size))
        return rect; // exactly
    const double x = rect.width() / size.width(), y = rect.height() / size.height();
    return {rect.x() + part.x() * x, rect.y() + part.y() * y, part.width() * x, part.height() * y};
}

qreal screenRatio() {
    const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    return application ? application->devicePixelRatio() : 1.0;
}

} // namespace platform

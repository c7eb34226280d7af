#include "platform/images/BundleImages.h"

#include "platform/images/ImageSource.h"

#include <QCache>
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// The longest side of a raster in pixels. Larger ones are scaled up by the painter.
constexpr qreal largestSide = 2048;

// The size of the raster cache in bytes. All images at the usual ratios and tints fit into it.
constexpr qsizetype rasterBudget = qsizetype{4} * 1024 * 1024;

struct RasterKey {
    QSvgRenderer* drawing;
    QSize size; // pixels
    QList<QRgb> tints;

    bool operator==(const RasterKey&) const = default;
};

size_t qHash(const RasterKey& key, size_t seed = 0) {
    return qHashMulti(seed, key.drawing, key.size.width(), key.size.height(), key.tints);
}

QImage rasterOf(const RasterKey& key) {
    static QCache<RasterKey, QImage> cache(rasterBudget);
    if (const QImage* found = cache.object(key))
        return *found;
    QImage raster(key.size, QImage::Format_ARGB32_Premultiplied);
    raster.fill(Qt::transparent);
    QPainter painter(&raster);
    key.drawing->render(&painter, QRectF(raster.rect()));
    painter.end();
    for (const QRgb tint : key.tints)
        tintPixels(raster, QColor::fromRgba(tint));
    cache.insert(key, new QImage(raster), raster.sizeInBytes());
    return raster;
}

class DrawingSource final : public Image::Source {
public:
    DrawingSource(std::shared_ptr<QSvgRenderer> drawing, QList<QRgb> tints)
        : drawing_(std::move(drawing))
        , tints_(std::move(tints)) {}

    QSizeF size() const override { return QSizeF(drawing_->defaultSize()); }

    QImage pixels(qreal ratio) const override {
        QImage raster = pixelsFilling(size() * ratio);
        raster.setDevicePixelRatio(ratio);
        return raster;
    }

    QImage pixelsFilling(const QSizeF& devicePixels) const override {
        const QSizeF bounded(std::min(devicePixels.width(), largestSide),
                             std::min(devicePixels.height(), largestSide));
        return rasterOf({drawing_.get(), wholePixels(bounded), tints_});
    }

    std::shared_ptr<const Image::Source> tinted(const QColor& color) const override {
        QList<QRgb> tints = color.alpha() == 255 ? QList<QRgb>() : tints_; // an opaque one hides all below
        tints.append(color.rgba());
        return std::make_shared<DrawingSource>(drawing_, std::move(tints));
    }

private:
    std::shared_ptr<QSvgRenderer> drawing_;
    QList<QRgb> tints_;
};

// The images that were asked for or set.
QHash<QString, Image>& knownImages() {
    static QHash<QString, Image> images;
    return images;
}

Image readImage(const QString& name) {
    const QString path = QStringLiteral(":/images/%1.svg").arg(name);
    if (!QFile::exists(path)) // the renderer would complain of it
        return {};
    auto drawing = std::make_shared<QSvgRenderer>(path);
    if (!drawing->isValid() || drawing->defaultSize().isEmpty())
        return {};
    return Image(std::make_shared<DrawingSource>(std::move(drawing), QList<QRgb>()));
}

} // namespace

Image imageNamed(const QString& name) {
    const auto found = knownImages().constFind(name);
    if (found != knownImages().constEnd())
        return *found;
    Image image = readImage(name);
    if (image) // an unknown name leaves nothing behind
        knownImages().insert(name, image);
    return image;
}

void setImageNamed(const QString& name, const Image& image) {
    knownImages().insert(name, image);
}

} // namespace platform

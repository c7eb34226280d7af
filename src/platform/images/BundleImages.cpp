#include "platform/images/BundleImages.h"

#include "platform/images/ImageSource.h"

#include <QCache>
#include <QDataStream>
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QPicture>

#include <algorithm>
#include <utility>
#include <vector>

namespace platform {

namespace {

// Beyond this many pixels a side, art is scaled up by the painter.
constexpr qreal largestSide = 2048;

// What the kept rasters may take, in bytes. All glyphs at all usual ratios and tints take less.
constexpr qsizetype rasterBudget = qsizetype{4} * 1024 * 1024;

// As it was recorded when the program was built: it looks as its SVG does, and what reads SVG is not loaded.
struct Drawing {
    QSize size; // points
    QPicture painting;
};

struct RasterKey {
    const Drawing* art;
    QSize size; // pixels
    QList<QRgb> tints;

    bool operator==(const RasterKey&) const = default;
};

size_t qHash(const RasterKey& key, size_t seed = 0) {
    return qHashMulti(seed, key.art, key.size.width(), key.size.height(), key.tints);
}

QImage rasterOf(const RasterKey& key) {
    static QCache<RasterKey, QImage> kept(rasterBudget);
    if (const QImage* found = kept.object(key))
        return *found;
    QImage raster(key.size, QImage::Format_ARGB32_Premultiplied);
    raster.fill(Qt::transparent);
    QPainter painter(&raster);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(qreal(key.size.width()) / key.art->size.width(),
                  qreal(key.size.height()) / key.art->size.height());
    painter.drawPicture(0, 0, key.art->painting);
    painter.end();
    for (const QRgb tint : key.tints)
        tintPixels(raster, tint);
    kept.insert(key, new QImage(raster), raster.sizeInBytes());
    return raster;
}

class ArtSource final : public Image::Source {
public:
    ArtSource(std::shared_ptr<const Drawing> art, QList<QRgb> tints)
        : art_(std::move(art))
        , tints_(std::move(tints)) {}

    QSizeF size() const override { return QSizeF(art_->size); }

    QImage pixels(qreal ratio) const override {
        QImage raster = pixelsFilling(size() * ratio);
        raster.setDevicePixelRatio(ratio);
        return raster;
    }

    QImage pixelsFilling(const QSizeF& devicePixels) const override {
        const QSizeF bounded(std::min(devicePixels.width(), largestSide),
                             std::min(devicePixels.height(), largestSide));
        return rasterOf({art_.get(), wholePixels(bounded), tints_});
    }

    std::shared_ptr<const Image::Source> tinted(const QColor& color) const override {
        QList<QRgb> tints = color.alpha() == 255 ? QList<QRgb>() : tints_; // an opaque one hides all below
        tints.append(color.rgba());
        return std::make_shared<ArtSource>(art_, std::move(tints));
    }

private:
    std::shared_ptr<const Drawing> art_;
    QList<QRgb> tints_;
};

std::vector<QString>& hiddenNames() {
    static std::vector<QString> names;
    return names;
}

Image recordedImage(const QString& name) {
    QFile file(QStringLiteral(":/images/%1.drawing").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_6_0);
    auto art = std::make_shared<Drawing>();
    stream >> art->size >> art->painting;
    if (stream.status() != QDataStream::Ok || art->size.isEmpty() || art->painting.isNull())
        return {};
    return Image(std::make_shared<ArtSource>(std::move(art), QList<QRgb>()));
}

} // namespace

Image imageNamed(const QString& name) {
    const auto& hidden = hiddenNames();
    if (std::find(hidden.begin(), hidden.end(), name) != hidden.end())
        return {};
    static QHash<QString, Image> read; // only what there is, so that it stays small
    const auto found = read.constFind(name);
    if (found != read.constEnd())
        return *found;
    Image image = recordedImage(name);
    if (image)
        read.insert(name, image);
    return image;
}

BundleImageHidden::BundleImageHidden(QString name)
    : name_(std::move(name)) {
    hiddenNames().push_back(name_);
}

BundleImageHidden::~BundleImageHidden() {
    auto& hidden = hiddenNames();
    hidden.erase(std::find(hidden.begin(), hidden.end(), name_));
}

} // namespace platform

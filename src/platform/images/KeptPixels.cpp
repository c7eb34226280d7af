#include "platform/images/KeptPixels.h"

#include "platform/images/ImageSource.h"

namespace platform {

namespace {

constexpr qint64 mostKeptWhole = qint64{128} * 128;

} // namespace

KeptPixels allPixels(const QSize& picture) {
    return {picture, QRect({}, picture)};
}

KeptPixels pixelsShownInView(const QSize& picture, const QSizeF& view, qreal ratio) {
    QSizeF size(picture);
    if (!(view.width() > 0) || !(view.height() > 0)) // NaN too
        size = QSizeF(0, 0);
    else if (size.width() > view.width() || size.height() > view.height())
        size.scale(view, Qt::KeepAspectRatio);
    return allPixels(wholePixels(size * ratio).boundedTo(picture));
}

KeptPixels keptPixels(const QSize& picture, const PixelChoice& choose) {
    const bool isSmall = qint64{picture.width()} * picture.height() <= mostKeptWhole;
    return isSmall ? allPixels(picture) : choose(picture);
}

} // namespace platform

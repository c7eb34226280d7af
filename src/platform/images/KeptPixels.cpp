#include "platform/images/KeptPixels.h"

#include "platform/images/ImageSource.h"

namespace platform {

namespace {

constexpr int sideKeptWhole = 128;

} // namespace

KeptPixels allPixels(const QSize& picture) {
    return {picture, QRect({}, picture)};
}

KeptPixels pixelsShownInView(const QSize& picture, const QSizeF& view, qreal ratio) {
    if (isWithinSquare(picture, sideKeptWhole))
        return allPixels(picture);
    QSizeF size(picture);
    if (!(view.width() > 0) || !(view.height() > 0)) // NaN too
        size = QSizeF(0, 0);
    else if (size.width() > view.width() || size.height() > view.height())
        size.scale(view, Qt::KeepAspectRatio);
    return allPixels(wholePixels(size * ratio).boundedTo(picture));
}

bool isWithinSquare(const QSize& picture, int side) {
    return qint64{picture.width()} * picture.height() <= qint64{side} * side;
}

} // namespace platform

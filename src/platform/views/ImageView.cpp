#include "platform/views/ImageView.h"

#include <QPainter>

#include <cmath>

namespace platform {

ImageView::ImageView(QWidget* parent)
    : View(parent) {}

void ImageView::setImage(const Image& image) {
    image_ = image;
    update();
}

AccessibleTraits ImageView::accessibleTraits() const {
    AccessibleTraits traits;
    traits.role = QAccessible::Graphic;
    return traits;
}

void ImageView::paintEvent(QPaintEvent*) {
    if (image_.isNull())
        return;
    QSizeF size = image_.size();
    if (size.width() > width() || size.height() > height())
        size.scale(QSizeF(this->size()), Qt::KeepAspectRatio);
    QRectF place({}, size);
    place.moveCenter(QRectF(rect()).center());
    // Art at whole points stays crisp.
    place.moveTo(std::floor(place.x()), std::floor(place.y()));
    QPainter painter(this);
    image_.draw(painter, place);
}

} // namespace platform

#include "views/controls/TodayTintButtonCell.h"

#include "platform/system/Fatal.h"
#include "platform/views/Button.h"

#include <cmath>

namespace {

constexpr double pressedAlpha = 0.5;

// Truncates towards zero. A value beyond 64-bit integers is fatal.
double truncated(double value) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    platform::require(std::isfinite(value) && value >= -limit && value < limit);
    return std::trunc(value);
}

bool isRightToLeft(const platform::Button& view) {
    const platform::View* superview = view.superview();
    platform::require(superview != nullptr);
    return superview->userInterfaceLayoutDirection() == Qt::RightToLeft;
}

} // namespace

void TodayTintButtonCell::highlight(bool flag, const QRectF&, platform::Button& view) {
    view.setAlphaValue(flag ? pressedAlpha : 1);
}

// The rectangle is ignored, on purpose: the frame of the button determines the place of the image.
void TodayTintButtonCell::drawImage(QPainter& painter, const platform::Image& image, const QRectF&,
                                    platform::Button& view) {
    tintedImage(image).draw(painter, imageRect(image.size(), view));
}

QRectF TodayTintButtonCell::imageRect(QSizeF imageSize, const platform::Button& view) const {
    const QSizeF size = view.frame().size();
    double x = 0;
    if (imageCenterX)
        x = truncated((size.width() - imageSize.width()) * 0.5);
    else if (isRightToLeft(view))
        x = size.width() - imageSize.width(); // not truncated, on purpose
    const double y = truncated((size.height() - imageSize.height()) * 0.5);
    return {QPointF(x, y), imageSize};
}

QRectF TodayTintButtonCell::drawTitle(QPainter& painter, const platform::AttributedString& title,
                                      const QRectF& rect, platform::Button& view) {
    if (title.isEmpty())
        return rect;
    const QRectF place = titleRect(rect, view);
    title.draw(painter, place, isRightToLeft(view) ? Qt::RightToLeft : Qt::LeftToRight);
    return rect;
}

// The place is relative to the origin of the button and not of the rectangle, on purpose. In a left-to-right
// layout the title has the whole width of the rectangle although it starts at an offset.
QRectF TodayTintButtonCell::titleRect(const QRectF& rect, const platform::Button& view) const {
    if (isRightToLeft(view))
        return {0, titleYOffset, rect.width() - titleXOffset, rect.height()};
    return {titleXOffset, titleYOffset, rect.width(), rect.height()};
}

platform::Image TodayTintButtonCell::tintedImage(const platform::Image& image) const {
    platform::require(!image.isNull());
    return image.tinted(tintColor);
}

#pragma once

#include "platform/images/Image.h"
#include "platform/images/KeptPixels.h"

namespace platform {

// A new image of a size, transparent but for a picture that is drawn into a rectangle (which may reach beyond
// the size, or leave some of it free) and shows only within the oval that fills the size. Size and rectangle
// are in points, y counts down; `ratio` pixels make a point of the result. The oval's edge is smooth.
// Null where the picture is null, where a
// number is not finite or a size not positive, or where the result would be over 4096 pixels a side.
[[nodiscard]] Image ovalPicture(const Image& picture, const QRectF& drawing, const QSizeF& size, qreal ratio);

// The pixels of a picture that ovalPicture needs, one pixel a point: those around the oval, and shrunk where
// the picture is drawn at half its size or less. All of a picture of up to 256 by 256 pixels, or as many in
// another shape: they are let go of once the oval is drawn.
[[nodiscard]] KeptPixels pixelsShownInOval(const QSize& picture, const QRectF& drawing, const QSizeF& size,
                                           qreal ratio);

} // namespace platform

#pragma once

#include <QRect>
#include <QSize>
#include <QSizeF>

#include <functional>

namespace platform {

// Which pixels of a picture are kept: a part of the picture shrunk to a size, both in pixels.
struct KeptPixels {
    QSize scaled; // nowhere larger than the picture
    QRect part;   // of the shrunk picture, and never empty

    bool operator==(const KeptPixels&) const = default;
};

// Says which pixels of a picture of a size (pixels) are kept.
using PixelChoice = std::function<KeptPixels(const QSize& picture)>;

[[nodiscard]] KeptPixels allPixels(const QSize& picture);

// What an image view of a size (points) shows of a picture of one pixel a point, at a ratio of pixels to a
// point: the picture shrunk in proportion; one pixel for a view without a size, which shows nothing. But a
// picture of up to 128 by 128 pixels, or as many in another shape, is kept whole: glyphs of the usual sizes
// stay as they are, whatever the ratio of the screen that they come to.
[[nodiscard]] KeptPixels pixelsShownInView(const QSize& picture, const QSizeF& view, qreal ratio);

// Whether a picture has no more pixels than a square of a side.
[[nodiscard]] bool isWithinSquare(const QSize& picture, int side);

} // namespace platform

#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSizeF>

#include <memory>

class QPainter;

// Main thread only.
namespace platform {

// A picture with a size in points: either pixels (one a point, whatever density the file states, unless the
// picture was drawn at a screen's ratio or fewer were kept) or a drawing of the bundle, which is rendered for
// each ratio of pixels to a point and so is crisp at each. A value: cheap to copy, never changed in place.
class Image final {
public:
    class Source;

    Image() = default; // no image
    // Pixels; the image's devicePixelRatio says how many of them make a point. Null pixels make no image.
    explicit Image(QImage pixels);
    // Pixels shown at a size in points; the last row and column may be covered in part only.
    Image(QImage pixels, QSizeF size);
    // Pixels of a part of a picture; the rest of it shows nothing. Size and part in points.
    Image(QImage pixels, QSizeF size, QRectF part);
    explicit Image(std::shared_ptr<const Source> source);

    [[nodiscard]] bool isNull() const { return !source_; }
    explicit operator bool() const { return !isNull(); }

    // In points.
    [[nodiscard]] QSizeF size() const;

    // The part of the picture that the pixels show, in points: all of it, save where no more was kept.
    [[nodiscard]] QRectF part() const;

    // A copy in which every painted pixel has the colour and keeps its own alpha (a source-atop fill of the
    // whole size, Porter and Duff 1984; a translucent colour lets the picture's own shine through). This
    // image is not changed. Null stays null.
    [[nodiscard]] Image tinted(const QColor& color) const;

    // The picture at a ratio of pixels to a point, premultiplied ARGB; pixels come as they are, whatever the
    // ratio.
    [[nodiscard]] QImage pixels(qreal ratio) const;

    // Draws it into a rectangle (points), source-over. Pixels that need no scaling are aligned to the
    // device's, so that they stay crisp; others are scaled smoothly. An empty rectangle draws nothing.
    void draw(QPainter& painter, const QRectF& rect) const;

private:
    std::shared_ptr<const Source> source_;
};

// Where a part of a picture lies when the whole picture of a size lies in a rectangle.
[[nodiscard]] QRectF placeOfPart(const QRectF& part, const QSizeF& size, const QRectF& rect);

// How many pixels make a point on the screen: the application's ratio, 1 without one.
[[nodiscard]] qreal screenRatio();

} // namespace platform

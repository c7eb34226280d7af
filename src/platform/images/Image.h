#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSizeF>

#include <memory>
#include <string>

class QPainter;

namespace platform {

// A picture with a size in points. Either pixels (a point is a pixel of the file, whatever density it states,
// unless the picture was drawn at a screen's ratio) or art of the bundle, which is drawn anew at whatever
// ratio it is asked for and so is crisp at each. A value: cheap to copy, never changed in place.
class Image final {
public:
    class Source;

    Image() = default; // no image
    // Pixels; the image's devicePixelRatio says how many of them make a point.
    explicit Image(QImage pixels);
    explicit Image(std::shared_ptr<const Source> source);

    [[nodiscard]] bool isNull() const { return !source_; }
    explicit operator bool() const { return !isNull(); }

    // In points.
    [[nodiscard]] QSizeF size() const;

    // A copy in which every painted pixel has the colour and keeps its own alpha (source-atop fill of the
    // whole size). This image is not changed. Null stays null.
    [[nodiscard]] Image tinted(const QColor& color) const;

    // The picture at a ratio of pixels to a point, premultiplied ARGB; pixels come as they are, whatever the
    // ratio.
    [[nodiscard]] QImage pixels(qreal ratio) const;

    // Draws it into a rectangle (points), source-over. Scaled down smoothly where the rectangle asks for it.
    void draw(QPainter& painter, const QRectF& rect) const;

private:
    std::shared_ptr<const Source> source_;
};

// Loads a picture file (PNG) with one pixel a point. Null where the file is missing, unreadable, no regular
// file, no image, of no size, or beyond Qt's image allocation limit.
[[nodiscard]] Image imageWithContentsOfFile(const std::string& path);

// How many pixels make a point on the screen: the application's ratio, 1 without one.
[[nodiscard]] qreal screenRatio();

} // namespace platform

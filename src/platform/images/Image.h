#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSizeF>

#include <memory>
#include <string>

class QPainter;

// Main thread only.
namespace platform {

// A picture with a size in points. Either pixels (a point is a pixel of the file, whatever density it states,
// unless the picture was drawn at a screen's ratio) or art of the bundle, which is drawn anew at whatever
// ratio it is asked for and so is crisp at each. A value: cheap to copy, never changed in place.
class Image final {
public:
    class Source;

    Image() = default; // no image
    // Pixels; the image's devicePixelRatio says how many of them make a point. Null pixels make no image.
    explicit Image(QImage pixels);
    // Pixels shown at a size in points that they fill but for the rest of a last pixel.
    Image(QImage pixels, QSizeF size);
    explicit Image(std::shared_ptr<const Source> source);

    [[nodiscard]] bool isNull() const { return !source_; }
    explicit operator bool() const { return !isNull(); }

    // In points.
    [[nodiscard]] QSizeF size() const;

    // A copy in which every painted pixel has the colour and keeps its own alpha (a source-atop fill of the
    // whole size, Porter and Duff 1984; a translucent colour lets the picture's own shine through). This
    // image is not changed. Null stays null.
    [[nodiscard]] Image tinted(const QColor& color) const;

    // The picture at a ratio of pixels to a point, premultiplied ARGB; pixels come as they are, whatever the
    // ratio.
    [[nodiscard]] QImage pixels(qreal ratio) const;

    // Draws it into a rectangle (points), source-over. Where no scaling is asked for, the pixels are set on
    // whole pixels of the device, so that they stay as crisp as they are; else they are scaled smoothly. A
    // rectangle of no size draws nothing.
    void draw(QPainter& painter, const QRectF& rect) const;

private:
    std::shared_ptr<const Source> source_;
};

// Loads a picture file with one pixel a point, whatever density it states or its name hints at. It is meant
// to be a PNG; what it is, its content decides, among the formats of pixels that Qt reads. The pixels are
// taken as they are stored: no gamma, no colour profile, no rotation. Null where the file is missing,
// unreadable, no regular file, no whole picture, or beyond Qt's image allocation limit, and for a path that
// holds a NUL byte.
[[nodiscard]] Image imageWithContentsOfFile(const std::string& path);

// How many pixels make a point on the screen: the application's ratio, 1 without one.
[[nodiscard]] qreal screenRatio();

} // namespace platform

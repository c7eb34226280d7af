#pragma once

#include "platform/images/Image.h"

namespace platform {

// The pixels of an image, which never change for the image's user.
class Image::Source {
public:
    Source() = default;
    virtual ~Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    [[nodiscard]] virtual QSizeF size() const = 0; // points
    [[nodiscard]] virtual QRectF part() const { return {{}, size()}; }
    [[nodiscard]] virtual QImage pixels(qreal ratio) const = 0;
    // The pixels to draw into a rectangle of the device; of another size where the painter is to scale them.
    [[nodiscard]] virtual QImage pixelsFilling(const QSizeF& devicePixels) const = 0;
    [[nodiscard]] virtual std::shared_ptr<const Source> tinted(const QColor& color) const = 0;
};

// Fills premultiplied pixels with a colour, source-atop: each keeps its alpha.
void tintPixels(QImage& pixels, const QColor& color);

// A size rounded to whole pixels, at least one by one.
[[nodiscard]] QSize wholePixels(const QSizeF& size);

} // namespace platform

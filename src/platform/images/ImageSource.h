#pragma once

#include "platform/images/Image.h"

namespace platform {

// Where an image's pixels come from. Immutable to whoever looks at it.
class Image::Source {
public:
    Source() = default;
    virtual ~Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    [[nodiscard]] virtual QSizeF size() const = 0; // points
    [[nodiscard]] virtual QImage pixels(qreal ratio) const = 0;
    // What to draw into that many pixels of a device; of another size where the painter is to scale it up.
    [[nodiscard]] virtual QImage pixelsFilling(const QSizeF& devicePixels) const = 0;
    [[nodiscard]] virtual std::shared_ptr<const Source> tinted(const QColor& color) const = 0;
};

// Fills premultiplied pixels with a colour, source-atop: each keeps its alpha.
void tintPixels(QImage& pixels, QRgb color);

// The whole pixels next to a size, at least one by one.
[[nodiscard]] QSize wholePixels(const QSizeF& size);

} // namespace platform

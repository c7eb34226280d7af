#pragma once

#include <QImage>

namespace platform {

// Premultiplied pixels shrunk to a size that is at most their own in both directions and at least one by one:
// each new pixel is the average of the area that it stands for. (QImage's smooth scaling takes nearly twice as
// long where it shrinks by less than half.)
[[nodiscard]] QImage averaged(const QImage& pixels, const QSize& size);

} // namespace platform

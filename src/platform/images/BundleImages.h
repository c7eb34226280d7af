#pragma once

#include "platform/images/Image.h"

#include <QString>

namespace platform {

// The images of the bundle by name: the SVG files ":/images/NAME.svg" of the resources, each read once. Their
// rasters are cached by image, tint and number of pixels, within a fixed amount of memory, so that many rows
// share one. A name that is unknown gives a null image. Main thread only.
[[nodiscard]] Image imageNamed(const QString& name);

// Puts an image in the place of the bundle's own of that name; a null image takes it away.
void setImageNamed(const QString& name, const Image& image);

} // namespace platform

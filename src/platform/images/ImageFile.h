#pragma once

#include "platform/images/Image.h"
#include "platform/images/KeptPixels.h"

#include <string>

namespace platform {

// Loads a picture file, of which the image keeps the pixels that are chosen; its size is the file's, with one
// pixel a point, whatever density the file states or its name hints at. It should be a PNG file; its content
// decides, among all pixel formats that Qt reads. The pixels are taken as they are stored: no gamma, no
// colour profile, no rotation. Null where the file is missing, unreadable, no regular file, no whole picture,
// or beyond Qt's image allocation limit, and for a path that holds a NUL byte.
[[nodiscard]] Image imageWithContentsOfFile(const std::string& path, const PixelChoice& choose = allPixels);

} // namespace platform

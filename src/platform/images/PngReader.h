#pragma once

#include "platform/images/KeptPixels.h"

#include <QImage>

class QIODevice;

namespace platform {

// The pixels that were kept of a picture file; null ones where it could not be read.
struct FilePixels {
    QSize picture; // the file's pixels
    KeptPixels kept;
    QImage pixels;
};

// Whether a device's next bytes are the signature of a PNG file. They are not consumed.
[[nodiscard]] bool beginsLikePng(QIODevice& device);

// Reads a PNG (ISO/IEC 15948) with libpng, line by line, so that no more than a few lines and what is kept
// are in memory at once, also of an interlaced one: the samples as they are stored, converted to eight bits,
// with no gamma and no colour profile applied and no density set. QImageReader is not used because libpng
// prints its errors to standard error there, and a broken icon must end the program silently. Null where the
// file is broken or truncated, or where all its pixels would take more than QImageReader's allocation limit.
[[nodiscard]] FilePixels readPng(QIODevice& device, const PixelChoice& choose);

} // namespace platform

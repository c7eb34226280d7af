#pragma once

#include <QImage>

class QIODevice;

namespace platform {

// Whether a device's next bytes are the signature of a PNG file. They are not consumed.
[[nodiscard]] bool beginsLikePng(QIODevice& device);

// Reads a PNG (ISO/IEC 15948) with libpng: the samples as they are stored, converted to eight bits, with no
// gamma and no colour profile applied and no density set. QImageReader is not used because libpng prints its
// errors to standard error there, and a broken icon must end the program silently. Null where the file is
// broken or truncated, or where the pixels would take more than QImageReader's allocation limit.
[[nodiscard]] QImage readPng(QIODevice& device);

} // namespace platform

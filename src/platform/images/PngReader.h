#pragma once

#include <QImage>

class QIODevice;

namespace platform {

// Whether a device's next bytes are a PNG's signature. None is taken from it.
[[nodiscard]] bool beginsLikePng(QIODevice& device);

// Reads a PNG (ISO/IEC 15948), with libpng itself: its samples as they are stored, brought to eight bits, no
// gamma or profile applied, no density told. Qt's reader lets libpng write of broken files to standard error,
// and looks through the image plugins before it reads even a PNG. Null where the file is broken or cut short
// anywhere, or where the pixels would take more than QImageReader's allocation limit.
[[nodiscard]] QImage readPng(QIODevice& device);

} // namespace platform

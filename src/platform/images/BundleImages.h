#pragma once

#include "platform/images/Image.h"

#include <QString>

namespace platform {

// The images of the bundle by name: the SVG files ":/images/NAME.svg" of the resources, each read once. Their
// rasters are cached by image, tint and number of pixels, within a fixed amount of memory, so that many rows
// share one. A name that is unknown gives a null image. Main thread only.
[[nodiscard]] Image imageNamed(const QString& name);

// Hides one image of the bundle from imageNamed for as long as it lives, so that the faults of a bundle can
// be tested.
class BundleImageHidden final {
public:
    explicit BundleImageHidden(QString name);
    ~BundleImageHidden();
    BundleImageHidden(const BundleImageHidden&) = delete;
    BundleImageHidden& operator=(const BundleImageHidden&) = delete;

private:
    QString name_;
};

} // namespace platform

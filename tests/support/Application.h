#pragma once

#include <QImage>

namespace platform {
class View;
}

// Helpers of test programs with views. The main() of such a program makes one QApplication on the offscreen
// platform. After each test and its fixture, main() performs deferred deletes and fails the test if Qt has
// printed a warning.
namespace support {

// Performs the deletes of deleteLater(), also of views without an owner.
void flushDeferredDeletes();

// Processes all pending events, including layout and painting, without waiting.
void settle();

// Shows a view as a window of a size in points.
void showWindow(platform::View& view, int width, int height);

// The picture of a view and its subviews on a transparent background, one pixel per point.
QImage painted(platform::View& view);

// The smallest rectangle around all pixels that are not transparent; null if there are none.
[[nodiscard]] QRect inkOf(const QImage& image);

} // namespace support

#pragma once

#include <QImage>

namespace platform {
class View;
}

// What test programs with views share. Their main() makes one QApplication on the offscreen platform. At the
// end of each test, after its fixture is gone, deferred deletes are carried out, and a warning of Qt's that
// the test has brought about fails it.
namespace support {

// Carries out what deleteLater() has deferred, and deletes all views that nobody refers to any more.
void flushDeferredDeletes();

// Hands on all posted events, and lays out and paints what is shown. Nothing is waited for.
void settle();

// Shows a view as a window of a size in points.
void showWindow(platform::View& view, int width, int height);

// What a view paints, subviews included, on a transparent ground, one pixel a point.
QImage painted(platform::View& view);

// The smallest rectangle around all that is not transparent; a null one where everything is.
[[nodiscard]] QRect inkOf(const QImage& image);

} // namespace support

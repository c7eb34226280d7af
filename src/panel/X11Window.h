#pragma once

#include <QPoint>

#include <optional>

class QWindow;

namespace panel {

// Where the X server has a window without a frame, in points of the desktop. Absent on other platforms.
//
// Qt asks the server while a window manager is still placing the window, and may believe from then on that it
// is at the screen's corner; with the next size that it states it would move it there.
[[nodiscard]] std::optional<QPoint> placeOfX11Window(const QWindow& window);

} // namespace panel

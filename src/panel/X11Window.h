#pragma once

#include <QPoint>

#include <cstdint>
#include <optional>

class QWindow;

namespace panel {

// Where the X server has a window without a frame, in points of the desktop. Absent on other platforms.
//
// Qt asks the server while a window manager is still placing the window, and may believe from then on that it
// is at the screen's corner; with the next size that it states it would move it there.
[[nodiscard]] std::optional<QPoint> placeOfX11Window(const QWindow& window);

// What the X server shows where the window is new and not painted yet: a pixel of the window's own form, 0
// for nothing in a translucent one. Qt has the server leave there what was on the screen. No effect on other
// platforms.
void setX11Background(const QWindow& window, std::uint32_t pixel);

} // namespace panel

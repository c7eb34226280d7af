#pragma once

#include <QByteArray>
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

// Whether the X server has a window focused now. False on other platforms.
[[nodiscard]] bool isFocusedX11Window(const QWindow& window);
// Whether a native event tells that its window has got the X server's focus. False on other platforms.
[[nodiscard]] bool isX11FocusIn(const QByteArray& eventType, const void* message);

// What the X server shows where the window is new and not painted yet: a pixel of the window's own form, 0
// for nothing in a translucent one. Qt has the server leave there what was on the screen. No effect on other
// platforms.
void setX11Background(const QWindow& window, std::uint32_t pixel);

} // namespace panel

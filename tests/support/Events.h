#pragma once

#include <QPoint>
#include <Qt>

#include <chrono>

class QWidget;

// Mouse and keyboard input. It is sent to the window, as the window system does, so that Qt chooses the
// receiver, grabs the mouse and detects double clicks. The window must be shown. Points are in the widget's
// coordinates and may be outside the widget. Separate clicks never form a double click.
namespace support {

void press(QWidget& widget, QPoint point, Qt::MouseButton button = Qt::LeftButton);
void drag(QWidget& widget, QPoint point);
// The mouse comes to rest at a point, with no button pressed; and it leaves the window.
void hover(QWidget& widget, QPoint point);
void leave(QWidget& widget);
void release(QWidget& widget, QPoint point, Qt::MouseButton button = Qt::LeftButton);
void click(QWidget& widget, QPoint point, Qt::MouseButton button = Qt::LeftButton);
// Two presses and releases in quick succession.
void doubleClick(QWidget& widget, QPoint point);
// A press or click that comes so long after the press before it, by the time that the events tell.
void pressAfter(std::chrono::milliseconds time, QWidget& widget, QPoint point);
void clickAfter(std::chrono::milliseconds time, QWidget& widget, QPoint point);
// Clicks the middle of the widget.
void click(QWidget& widget);
// The angle of one notch up is 120.
void turnWheel(QWidget& widget, int angle);
void scrollPixels(QWidget& widget, int pixels);
void pressKey(QWidget& widget, Qt::Key key);

} // namespace support

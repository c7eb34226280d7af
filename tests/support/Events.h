#pragma once

#include <QPoint>
#include <Qt>

class QWidget;

// Real input: handed to a widget's window as the window system hands it over, so that Qt's own choice of a
// receiver, its implicit grab and its double clicks take part. The window must show. Points are in the
// widget's coordinates and may lie outside it. Two clicks are far apart in time; only doubleClick is one.
namespace support {

void press(QWidget& widget, QPoint point, Qt::MouseButton button = Qt::LeftButton);
void drag(QWidget& widget, QPoint point);
void release(QWidget& widget, QPoint point, Qt::MouseButton button = Qt::LeftButton);
void click(QWidget& widget, QPoint point, Qt::MouseButton button = Qt::LeftButton);
// Press, release, press, release.
void doubleClick(QWidget& widget, QPoint point);
// In the middle.
void click(QWidget& widget);
// One notch up is 120.
void turnWheel(QWidget& widget, int angle);
void scrollPixels(QWidget& widget, int pixels);
void pressKey(QWidget& widget, Qt::Key key);

} // namespace support

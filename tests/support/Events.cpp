#include "support/Events.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

using namespace std::chrono_literals;

namespace {

QWindow& windowOf(QWidget& widget) {
    return *widget.window()->windowHandle();
}

// The window that the mouse has come into, which the window system would tell it.
QPointer<QWindow> windowWithMouse;

// When the last press was, by the clock of the events.
int lastPress = 0;

QPoint inWindow(QWidget& widget, QPoint point) {
    return widget.mapTo(widget.window(), point);
}

void sendWheel(QWidget& widget, QPoint pixels, QPoint angle) {
    const QPoint middle = widget.visibleRegion().boundingRect().center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), pixels, angle, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    // Qt propagates a wheel event to parent widgets only if it comes from the window system.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(&widget, &event);
}

} // namespace

void support::press(QWidget& widget, QPoint point, Qt::MouseButton button) {
    QTest::mousePress(&windowOf(widget), button, {}, inWindow(widget, point));
    lastPress = QTest::lastMouseTimestamp;
}

void support::drag(QWidget& widget, QPoint point) {
    QTest::mouseMove(&windowOf(widget), inWindow(widget, point));
}

void support::hover(QWidget& widget, QPoint point) {
    QWindow& window = windowOf(widget);
    const QPoint place = inWindow(widget, point);
    if (windowWithMouse != &window) {
        windowWithMouse = &window;
        QEnterEvent event(place, place, window.mapToGlobal(place));
        QCoreApplication::sendEvent(&window, &event);
    }
    QTest::mouseMove(&window, place);
}

void support::leave(QWidget& widget) {
    windowWithMouse = nullptr;
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&windowOf(widget), &event);
}

void support::release(QWidget& widget, QPoint point, Qt::MouseButton button) {
    QTest::mouseRelease(&windowOf(widget), button, {}, inWindow(widget, point));
}

void support::click(QWidget& widget, QPoint point, Qt::MouseButton button) {
    press(widget, point, button);
    release(widget, point, button);
}

void support::doubleClick(QWidget& widget, QPoint point) {
    click(widget, point);
    clickAfter(30ms, widget, point);
}

void support::pressAfter(std::chrono::milliseconds time, QWidget& widget, QPoint point) {
    QTest::lastMouseTimestamp = lastPress + static_cast<int>(time.count()) - 1; // a press adds one
    press(widget, point);
}

void support::clickAfter(std::chrono::milliseconds time, QWidget& widget, QPoint point) {
    pressAfter(time, widget, point);
    release(widget, point);
}

void support::click(QWidget& widget) {
    click(widget, widget.rect().center());
}

void support::turnWheel(QWidget& widget, int angle) {
    sendWheel(widget, {}, {0, angle});
}

void support::scrollPixels(QWidget& widget, int pixels) {
    sendWheel(widget, {0, pixels}, {0, pixels});
}

void support::pressKey(QWidget& widget, Qt::Key key) {
    QTest::keyClick(&widget, key);
}

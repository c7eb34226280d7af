#pragma once

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <cstdlib>

namespace bench {

// Ends the process as soon as a window has painted its first frame and handed it to the screen.
class EndAfterFirstFrame final : public QObject {
public:
    explicit EndAfterFirstFrame(QWidget& window) { window.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            QTimer::singleShot(0, qApp, [] {
                qApp->sync();
                std::_Exit(0);
            });
        return false;
    }
};

} // namespace bench

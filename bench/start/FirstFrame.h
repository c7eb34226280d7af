#pragma once

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace bench {

// Ends the process as soon as a window has painted its first frame and handed it to the screen, and prints
// that moment (seconds of the monotonic clock).
class EndAfterFirstFrame final : public QObject {
public:
    explicit EndAfterFirstFrame(QWidget& window) { window.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            QTimer::singleShot(0, qApp, [] {
                qApp->sync();
                const auto now = std::chrono::steady_clock::now().time_since_epoch();
                std::printf("%.9f\n", std::chrono::duration<double>(now).count());
                std::fflush(stdout);
                std::_Exit(0);
            });
        return false;
    }
};

} // namespace bench

// The yardstick: a window of the panel's size with one drawn string, from start to first frame.
#include "FirstFrame.h"

#include <QPainter>

namespace {

class Window final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("Nothing due"));
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Window window;
    window.resize(344, 316);
    const bench::EndAfterFirstFrame end(window);
    window.show();
    return QApplication::exec();
}

// A window for the tests of the end-to-end harness: a button that turns the window from red to green, Escape
// ends the program with 0, F1 makes the window 30 points taller, F2 is a crash.

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QWidget>

#include <cstdlib>

namespace {

class Window final : public QWidget {
public:
    Window() {
        setWindowFlag(Qt::FramelessWindowHint);
        setGeometry(40, 60, 200, 100);
        auto* button = new QPushButton(QStringLiteral("Turn green"), this);
        button->setGeometry(20, 20, 120, 30);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, [this] {
            color_ = QColor(0, 200, 0);
            update();
        });
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), color_); }

    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape)
            close();
        else if (event->key() == Qt::Key_F1)
            resize(width(), height() + 30);
        else if (event->key() == Qt::Key_F2)
            std::abort();
    }

private:
    QColor color_{200, 0, 0};
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Window window;
    window.show();
    return QApplication::exec();
}

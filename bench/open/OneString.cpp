// The yardstick: a made window of the panel's size and place with one drawn string, shown and hidden over the bus.
#include <QApplication>
#include <QDBusConnection>
#include <QPainter>
#include <QWidget>

namespace {

class Window final : public QWidget {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public Q_SLOTS:
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList&, const QVariantMap&) {
        setVisible(action == QStringLiteral("show"));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(29, 33, 38));
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("Nothing due"));
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Window window;
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    window.setAttribute(Qt::WA_OpaquePaintEvent);
    window.setGeometry(1280 - 12 - 344, 12, 344, 316);
    window.show();
    window.hide();
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(QStringLiteral("/com/korvel/bench"), &window, QDBusConnection::ExportScriptableSlots);
    bus.registerService(QStringLiteral("com.korvel.bench"));
    return QApplication::exec();
}

#include "OneString.moc"

#include "support/Application.h"

#include "platform/views/View.h"

#include <QApplication>
#include <QPainter>

void support::flushDeferredDeletes() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void support::settle() {
    QCoreApplication::processEvents();
}

void support::showWindow(platform::View& view, int width, int height) {
    view.setFrame(QRectF(20, 20, width, height));
    view.show();
    settle();
}

QImage support::painted(platform::View& view) {
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

QRect support::inkOf(const QImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y).alpha() > 0)
                ink |= QRect(x, y, 1, 1);
    return ink;
}

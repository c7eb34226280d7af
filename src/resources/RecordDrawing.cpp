// RecordDrawing SVG DRAWING: records how the images of the bundle are painted, while the program is built, so
// that it need not load what reads SVG. A drawing is the image's size in points (QSize) and its painting
// (QPicture).
#include <QDataStream>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPicture>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv); // the drawing's resolution is the application's
    if (argc != 3)
        return 2;
    QSvgRenderer image(QFile::decodeName(argv[1]));
    const QSize size = image.defaultSize();
    if (!image.isValid() || size.isEmpty()) {
        std::fprintf(stderr, "%s: no image of a size\n", argv[1]);
        return 1;
    }
    QPicture painting;
    QPainter painter(&painting);
    image.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    QFile file(QFile::decodeName(argv[2]));
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << size << painting;
    return stream.status() == QDataStream::Ok && file.flush() ? 0 : 1;
}

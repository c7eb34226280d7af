// render SOURCE.svg TARGET.png: draws a drawing at its own size, a point a pixel.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    QImage picture(drawing.defaultSize(), QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    if (!drawing.isValid() || picture.isNull()) {
        std::fprintf(stderr, "%s: no drawing\n", argv[1]);
        return 1;
    }
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(picture.rect()));
    painter.end();
    if (picture.save(QString::fromLocal8Bit(argv[2]), "PNG"))
        return 0;
    std::fprintf(stderr, "%s: cannot be written\n", argv[2]);
    return 1;
}

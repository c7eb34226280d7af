// korvel_render_icon SOURCE.svg SIDE TARGET.png: draws a square drawing at so many pixels a side.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 4)
        return 2;
    const QString source = QString::fromLocal8Bit(argv[1]);
    const QString target = QString::fromLocal8Bit(argv[3]);
    const int side = QString::fromLatin1(argv[2]).toInt();
    QSvgRenderer drawing(source);
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    if (!drawing.isValid() || picture.isNull()) {
        std::fprintf(stderr, "%s: cannot be drawn at %s pixels a side\n", argv[1], argv[2]);
        return 1;
    }
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(picture.rect()));
    painter.end();
    if (picture.save(target, "PNG"))
        return 0;
    std::fprintf(stderr, "%s: cannot be written\n", argv[3]);
    return 1;
}

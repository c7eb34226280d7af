#include "platform/views/TextLine.h"

#include "platform/views/Fonts.h"
#include "support/Application.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

using platform::TextLine;

namespace {

const QStringList texts{QStringLiteral("Rent"),        QStringLiteral("ends in spaces  "),
                        QStringLiteral("−1,234.50 €"), QStringLiteral("إيجار الشقة 12"),
                        QStringLiteral("家賃"),        QStringLiteral("mixed إيجار and ジム"),
                        QStringLiteral("  "),          QString()};

QImage canvas() {
    QImage image(300, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

// A line as the painter draws a text, which is what it must look like.
QImage drawnByPainter(const QString& text, const QFont& font, Qt::Alignment side) {
    QImage image = canvas();
    QPainter painter(&image);
    painter.setPen(Qt::white);
    painter.setFont(platform::exactFont(font).font);
    painter.drawText(QRectF(10, 3, 280, 31),
                     static_cast<int>(side | Qt::AlignVCenter | Qt::AlignAbsolute | Qt::TextSingleLine),
                     text);
    return image;
}

QImage drawn(const TextLine& line, const QRectF& rect, Qt::Alignment side) {
    QImage image = canvas();
    QPainter painter(&image);
    painter.setPen(Qt::white);
    line.draw(painter, rect, side);
    return image;
}

} // namespace

TEST(TextLine, isAsWideAsItsFontSays) {
    const QFont font = platform::systemFont(15);
    for (const QString& text : texts)
        EXPECT_EQ(platform::textWidth(text, font),
                  QFontMetricsF(platform::exactFont(font).font).horizontalAdvance(text))
            << qPrintable(text);
}

TEST(TextLine, looksAsThePainterDrawsIt) {
    for (const int size : {12, 15, 16})
        for (const QString& text : texts)
            for (const auto side : {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter}) {
                const QFont font = platform::boldSystemFont(size);
                EXPECT_EQ(drawn(TextLine(text, font), QRectF(10, 3, 280, 31), side),
                          drawnByPainter(text, font, side))
                    << qPrintable(text) << ' ' << size << ' ' << side;
            }
}

TEST(TextLine, ofAFractionalSizeIsDrawnAsWideAsItIsMeasured) {
    const QString text = QStringLiteral("████████");
    const TextLine line(text, platform::boldSystemFont(12.4));
    const QRect ink = support::inkOf(drawn(line, QRectF(0, 0, 300, 40), Qt::AlignLeft));
    EXPECT_NEAR(ink.width(), line.width(), 2);
    EXPECT_LT(line.width(), platform::textWidth(text, platform::boldSystemFont(13)));
}

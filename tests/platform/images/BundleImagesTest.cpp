#include "platform/images/BundleImages.h"

#include "platform/images/Pictures.h"
#include "support/BundleImageHidden.h"

#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

namespace platform {
namespace {

const QStringList actionNames{QStringLiteral("paid"), QStringLiteral("later"), QStringLiteral("info"),
                              QStringLiteral("delete")};
const QStringList stateNames{QStringLiteral("transactionPlanned"), QStringLiteral("transactionOverdue")};
const QStringList allNames =
    actionNames + stateNames + QStringList{QStringLiteral("add"), QStringLiteral("planFile")};

// How many pixels are painted in one image and not in the other.
int shapeDifference(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            count += (qAlpha(one.pixel(x, y)) > 127) != (qAlpha(other.pixel(x, y)) > 127) ? 1 : 0;
    return count;
}

TEST(BundleImagesTest, hasEachImageOfTheBundle) {
    for (const QString& name : allNames)
        EXPECT_FALSE(imageNamed(name).isNull()) << name.toStdString();
}

TEST(BundleImagesTest, givesNoneForAnUnknownName) {
    EXPECT_TRUE(imageNamed(QStringLiteral("nothing")).isNull());
    EXPECT_TRUE(imageNamed(QString()).isNull());
    EXPECT_TRUE(imageNamed(QStringLiteral("Paid")).isNull());
}

TEST(BundleImagesTest, drawsTheActionsOnOneGrid) {
    for (const QString& name : actionNames)
        EXPECT_EQ(imageNamed(name).size(), QSizeF(24, 24)) << name.toStdString();
    for (const QString& name : stateNames)
        EXPECT_EQ(imageNamed(name).size(), QSizeF(12, 12)) << name.toStdString();
}

TEST(BundleImagesTest, hasPixelsForEachRatio) {
    for (const QString& name : allNames) {
        for (const qreal ratio : {1.0, 1.5, 2.0, 4.0}) {
            const QImage pixels = imageNamed(name).pixels(ratio);
            EXPECT_EQ(QSizeF(pixels.size()), imageNamed(name).size() * ratio);
            EXPECT_EQ(pixels.devicePixelRatio(), ratio);
        }
    }
}

TEST(BundleImagesTest, looksAsItsSvgDoes) {
    for (const QString& name : allNames) {
        QSvgRenderer svg(QStringLiteral(KORVEL_SOURCE_DIR "/src/resources/images/%1.svg").arg(name));
        ASSERT_TRUE(svg.isValid()) << name.toStdString();
        for (const qreal ratio : {1.0, 1.25, 2.0, 3.0}) {
            QImage pixels = imageNamed(name).pixels(ratio);
            pixels.setDevicePixelRatio(1);
            QImage wanted(pixels.size(), QImage::Format_ARGB32_Premultiplied);
            wanted.fill(Qt::transparent);
            QPainter painter(&wanted);
            painter.setRenderHint(QPainter::Antialiasing);
            svg.render(&painter, QRectF(wanted.rect()));
            painter.end();
            EXPECT_EQ(pixels, wanted) << name.toStdString() << ' ' << ratio;
        }
    }
}

TEST(BundleImagesTest, isWhiteAllOver) {
    for (const QString& name : allNames) {
        const QImage pixels = imageNamed(name).pixels(2);
        bool isPainted = false;
        for (int y = 0; y < pixels.height(); ++y) {
            for (int x = 0; x < pixels.width(); ++x) {
                const QRgb pixel = reinterpret_cast<const QRgb*>(pixels.constScanLine(y))[x];
                const int alpha = qAlpha(pixel);
                ASSERT_TRUE(isNear(pixel, qRgba(alpha, alpha, alpha, alpha), 1)) << name.toStdString();
                isPainted = isPainted || alpha == 255;
            }
        }
        EXPECT_TRUE(isPainted) << name.toStdString();
    }
}

TEST(BundleImagesTest, leavesABorderFreeForTheEdges) {
    for (const QString& name : allNames) {
        const QImage pixels = imageNamed(name).pixels(4);
        for (int at = 0; at < pixels.width(); ++at) {
            ASSERT_EQ(qAlpha(pixels.pixel(at, 0)), 0) << name.toStdString();
            ASSERT_EQ(qAlpha(pixels.pixel(0, at)), 0) << name.toStdString();
            ASSERT_EQ(qAlpha(pixels.pixel(at, pixels.height() - 1)), 0) << name.toStdString();
            ASSERT_EQ(qAlpha(pixels.pixel(pixels.width() - 1, at)), 0) << name.toStdString();
        }
    }
}

TEST(BundleImagesTest, tellsOverdueFromPlannedByShape) {
    EXPECT_GT(shapeDifference(imageNamed(stateNames[0]).pixels(1), imageNamed(stateNames[1]).pixels(1)), 40);
}

TEST(BundleImagesTest, tintsAtEachRatioExactly) {
    const Image plain = imageNamed(QStringLiteral("info"));
    const Image tinted = plain.tinted(QColor(243, 123, 5));
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        const QImage before = plain.pixels(ratio), after = tinted.pixels(ratio);
        for (int y = 0; y < before.height(); ++y) {
            for (int x = 0; x < before.width(); ++x) {
                const int alpha = qAlpha(before.pixel(x, y));
                ASSERT_EQ(reinterpret_cast<const QRgb*>(after.constScanLine(y))[x],
                          qPremultiply(qRgba(243, 123, 5, alpha)));
            }
        }
    }
}

TEST(BundleImagesTest, takesTheLastOpaqueTint) {
    const Image plain = imageNamed(QStringLiteral("delete"));
    EXPECT_EQ(plain.tinted(Qt::red).tinted(Qt::blue).pixels(1), plain.tinted(Qt::blue).pixels(1));
    EXPECT_NE(plain.tinted(Qt::red).tinted(QColor(0, 0, 255, 128)).pixels(1),
              plain.tinted(QColor(0, 0, 255, 128)).pixels(1));
}

TEST(BundleImagesTest, sharesOneRasterAmongRows) {
    const auto raster = [] {
        return imageNamed(QStringLiteral("transactionOverdue")).tinted(QColor(243, 123, 5)).pixels(1);
    };
    const QImage first = raster();
    for (int row = 0; row < 1000; ++row)
        ASSERT_EQ(raster().cacheKey(), first.cacheKey());
}

TEST(BundleImagesTest, drawsTheRasterOfTheDevicesRatio) {
    const Image image = imageNamed(QStringLiteral("later"));
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
        QImage wanted = image.pixels(ratio);
        QImage canvas = plainPicture(96, 96, clear);
        canvas.setDevicePixelRatio(ratio);
        QPainter painter(&canvas);
        image.draw(painter, QRectF(4, 8, 24, 24));
        painter.end();
        canvas.setDevicePixelRatio(1);
        wanted.setDevicePixelRatio(1);
        EXPECT_EQ(canvas.copy(qRound(4 * ratio), qRound(8 * ratio), wanted.width(), wanted.height()), wanted)
            << ratio;
    }
}

TEST(BundleImagesTest, staysCrispWhenItIsDrawnLarger) {
    const Image image = imageNamed(QStringLiteral("paid"));
    QImage canvas = plainPicture(96, 96, clear);
    QPainter painter(&canvas);
    image.draw(painter, QRectF(0, 0, 96, 96));
    painter.end();
    QImage wanted = image.pixels(4);
    wanted.setDevicePixelRatio(1);
    EXPECT_EQ(canvas, wanted);
}

TEST(BundleImagesTest, isBoundedHoweverLargeItIsDrawn) {
    EXPECT_LE(imageNamed(QStringLiteral("paid")).pixels(1e6).width(), 2048);
}

TEST(BundleImagesTest, hidesAnImageForAsLongAsItIsTold) {
    const Image taken = imageNamed(QStringLiteral("info"));
    {
        const support::BundleImageHidden hidden(QStringLiteral("info"));
        const support::BundleImageHidden hiddenTwice(QStringLiteral("info"));
        EXPECT_TRUE(imageNamed(QStringLiteral("info")).isNull());
        EXPECT_FALSE(imageNamed(QStringLiteral("paid")).isNull());
        EXPECT_FALSE(taken.pixels(1).isNull());
    }
    EXPECT_FALSE(imageNamed(QStringLiteral("info")).isNull());
}

} // namespace
} // namespace platform

#include "platform/images/Image.h"

#include "platform/images/Pictures.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <limits>

namespace platform {
namespace {

// One pixel of each alpha, in a colour that premultiplication rounds.
QImage allAlphas() {
    QImage picture(256, 1, QImage::Format_ARGB32_Premultiplied);
    for (int alpha = 0; alpha < 256; ++alpha)
        reinterpret_cast<QRgb*>(picture.scanLine(0))[alpha] = qPremultiply(qRgba(200, 31, 77, alpha));
    return picture;
}

QImage drawn(const Image& image, const QRectF& rect, QSize canvasPixels, qreal ratio = 1) {
    QImage canvas(canvasPixels, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    canvas.setDevicePixelRatio(ratio);
    QPainter painter(&canvas);
    image.draw(painter, rect);
    painter.end();
    canvas.setDevicePixelRatio(1);
    return canvas;
}

// Columns of the colours in turn.
QImage stripes(int width, int height, QRgb even, QRgb odd) {
    QImage picture = plainPicture(width, height, even);
    for (int y = 0; y < height; ++y)
        for (int x = 1; x < width; x += 2)
            picture.setPixel(x, y, odd);
    return picture;
}

TEST(ImageTest, isNullUnlessItHasPixels) {
    EXPECT_TRUE(Image().isNull());
    EXPECT_TRUE(Image(QImage()).isNull());
    EXPECT_EQ(Image().size(), QSizeF(0, 0));
    EXPECT_TRUE(Image().pixels(1).isNull());
    EXPECT_TRUE(Image(plainPicture(1, 1, red)));
}

TEST(ImageTest, countsPointsByThePixelsRatio) {
    QImage pixels = plainPicture(80, 40, red);
    pixels.setDevicePixelRatio(2);
    EXPECT_EQ(Image(pixels).size(), QSizeF(40, 20));
    EXPECT_EQ(Image(plainPicture(80, 40, red)).size(), QSizeF(80, 40));
    EXPECT_EQ(Image(plainPicture(41, 20, red), QSizeF(40.5, 20)).size(), QSizeF(40.5, 20));
}

TEST(ImageTest, tintsEachAlphaExactly) {
    for (const QRgb tint : {0xffffffffU, 0xff000000U, 0xfff57b05U, 0xff0101feU}) {
        const QImage result = Image(allAlphas()).tinted(QColor::fromRgb(tint)).pixels(1);
        for (int alpha = 0; alpha < 256; ++alpha) {
            const QRgb wanted = qPremultiply(qRgba(qRed(tint), qGreen(tint), qBlue(tint), alpha));
            ASSERT_EQ(reinterpret_cast<const QRgb*>(result.constScanLine(0))[alpha], wanted)
                << std::hex << tint << " at alpha " << std::dec << alpha;
        }
    }
}

TEST(ImageTest, letsThePictureShineThroughATranslucentTint) {
    const Image image(plainPicture(1, 1, qPremultiply(qRgba(0, 0, 255, 128))));
    const QRgb result = Image(image).tinted(QColor(255, 0, 0, 51)).pixels(1).pixel(0, 0);
    EXPECT_EQ(qAlpha(result), 128);
    EXPECT_TRUE(isNear(result, qRgba(26, 0, 102, 128), 1)) << std::hex << result;
    EXPECT_EQ(image.tinted(Qt::transparent).pixels(1), image.pixels(1));
}

TEST(ImageTest, leavesTheTintedImageUnchanged) {
    const Image image(allAlphas());
    const Image copy = image;
    EXPECT_NE(image.tinted(Qt::white).pixels(1), allAlphas());
    EXPECT_EQ(image.pixels(1), allAlphas());
    EXPECT_EQ(copy.pixels(1), allAlphas());
}

TEST(ImageTest, keepsItsSizeWhenTinted) {
    QImage pixels = plainPicture(80, 40, red);
    pixels.setDevicePixelRatio(2);
    EXPECT_EQ(Image(pixels).tinted(Qt::white).size(), QSizeF(40, 20));
    EXPECT_TRUE(Image().tinted(Qt::white).isNull());
}

TEST(ImageTest, givesPixelsAsTheyAreAtEachRatio) {
    const QImage pixels = stripes(8, 8, red, blue);
    EXPECT_EQ(Image(pixels).pixels(1), pixels);
    EXPECT_EQ(Image(pixels).pixels(2), pixels);
}

TEST(ImageTest, drawsUnscaledPixelsUnchanged) {
    const QImage pixels = stripes(8, 6, red, blue);
    const QImage result = drawn(Image(pixels), QRectF(3, 2, 8, 6), {16, 12});
    EXPECT_EQ(result.copy(3, 2, 8, 6), pixels);
    EXPECT_EQ(result.pixel(2, 2), clear);
    EXPECT_EQ(result.pixel(11, 7), clear);
}

TEST(ImageTest, setsUnscaledPixelsOnWholePixelsOfTheDevice) {
    QImage pixels = stripes(12, 12, red, blue);
    pixels.setDevicePixelRatio(1.5);
    // 3 points are 4.5 pixels: the fifth.
    const QImage result = drawn(Image(pixels), QRectF(3, 3, 8, 8), {24, 24}, 1.5);
    pixels.setDevicePixelRatio(1);
    EXPECT_EQ(result.copy(5, 5, 12, 12), pixels);
}

TEST(ImageTest, showsThePixelsOfItsRatioOneToOne) {
    QImage pixels = stripes(16, 16, red, blue);
    pixels.setDevicePixelRatio(2);
    const QImage result = drawn(Image(pixels), QRectF(1, 1, 8, 8), {20, 20}, 2);
    pixels.setDevicePixelRatio(1);
    EXPECT_EQ(result.copy(2, 2, 16, 16), pixels);
}

TEST(ImageTest, averagesAllPixelsWhenShrinking) {
    // Red with one blue column in eight: a look at four pixels a point would miss it or show it whole.
    QImage pixels = plainPicture(64, 64, red);
    for (int y = 0; y < 64; ++y)
        for (int x = 3; x < 64; x += 8)
            pixels.setPixel(x, y, blue);
    const QImage result = drawn(Image(pixels), QRectF(0, 0, 8, 8), {8, 8});
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            ASSERT_TRUE(isNear(result.pixel(x, y), qRgb(223, 0, 32), 3)) << x << ' ' << y;
}

TEST(ImageTest, shrinksAnewForEachSize) {
    const Image image(plainPicture(64, 64, red));
    EXPECT_EQ(drawn(image, QRectF(0, 0, 8, 8), {8, 8}), plainPicture(8, 8, red));
    EXPECT_EQ(drawn(image, QRectF(0, 0, 16, 16), {16, 16}), plainPicture(16, 16, red));
}

TEST(ImageTest, drawsPixelsLargerSmoothly) {
    QImage pixels = plainPicture(2, 1, red);
    pixels.setPixel(1, 0, blue);
    const QImage result = drawn(Image(pixels), QRectF(0, 0, 16, 8), {16, 8});
    EXPECT_EQ(result.pixel(0, 4), red);
    EXPECT_EQ(result.pixel(15, 4), blue);
    EXPECT_GT(qRed(result.pixel(8, 4)), 60);
    EXPECT_GT(qBlue(result.pixel(8, 4)), 60);
}

TEST(ImageTest, drawsAPartInItsPlace) {
    // The left upper quarter of a picture of 16 by 8 points and a strip of its right, in fewer pixels.
    const Image quarter(plainPicture(4, 2, red), QSizeF(16, 8), QRectF(0, 0, 8, 4));
    const Image strip(plainPicture(1, 1, red), QSizeF(16, 8), QRectF(12, 0, 2, 8));
    EXPECT_EQ(quarter.part(), QRectF(0, 0, 8, 4));
    EXPECT_EQ(Image(plainPicture(4, 2, red)).part(), QRectF(0, 0, 4, 2));
    QImage wanted = plainPicture(20, 10, clear);
    for (const Image& image : {quarter, quarter.tinted(Qt::blue)}) {
        const QRgb color = image.pixels(1).pixel(0, 0);
        for (int y = 1; y < 5; ++y)
            for (int x = 2; x < 10; ++x)
                wanted.setPixel(x, y, color);
        EXPECT_EQ(drawn(image, QRectF(2, 1, 16, 8), {20, 10}), wanted);
    }
    wanted.fill(clear);
    for (int y = 0; y < 4; ++y)
        wanted.setPixel(6, y, red);
    EXPECT_EQ(drawn(strip, QRectF(0, 0, 8, 4), {20, 10}), wanted);
}

TEST(ImageTest, drawsUnderARotatedPainter) {
    QImage canvas = plainPicture(20, 20, clear);
    QPainter painter(&canvas);
    painter.translate(20, 0);
    painter.rotate(90);
    QImage pixels = plainPicture(10, 10, red);
    pixels.setPixel(0, 0, blue);
    Image(pixels).draw(painter, QRectF(0, 0, 10, 10));
    painter.end();
    EXPECT_TRUE(isNear(canvas.pixel(19, 0), blue));
    EXPECT_TRUE(isNear(canvas.pixel(11, 8), red));
    EXPECT_EQ(canvas.pixel(5, 5), clear);
}

TEST(ImageTest, drawsNothingIntoARectangleWithoutSize) {
    const Image image(plainPicture(8, 8, red));
    const QImage empty = plainPicture(16, 16, clear);
    constexpr qreal nan = std::numeric_limits<qreal>::quiet_NaN();
    EXPECT_EQ(drawn(image, QRectF(0, 0, 0, 8), {16, 16}), empty);
    EXPECT_EQ(drawn(image, QRectF(8, 8, -8, 8), {16, 16}), empty);
    EXPECT_EQ(drawn(image, QRectF(0, 0, nan, 8), {16, 16}), empty);
    EXPECT_EQ(drawn(Image(), QRectF(0, 0, 8, 8), {16, 16}), empty);
}

TEST(ImageTest, leavesThePaintersHintsAsTheyWere) {
    QImage canvas = plainPicture(20, 20, clear);
    QPainter painter(&canvas);
    for (const bool smooth : {false, true}) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
        Image(plainPicture(8, 8, red)).draw(painter, QRectF(0, 0, 4, 4));
        EXPECT_EQ(painter.testRenderHint(QPainter::SmoothPixmapTransform), smooth);
        Image(plainPicture(8, 8, red)).draw(painter, QRectF(0, 0, 16, 16));
        EXPECT_EQ(painter.testRenderHint(QPainter::SmoothPixmapTransform), smooth);
    }
}

TEST(ImageTest, blendsOverWhatIsThere) {
    QImage canvas = plainPicture(1, 1, red);
    QPainter painter(&canvas);
    Image(plainPicture(1, 1, qPremultiply(qRgba(0, 0, 255, 128)))).draw(painter, QRectF(0, 0, 1, 1));
    painter.end();
    EXPECT_TRUE(isNear(canvas.pixel(0, 0), qRgb(127, 0, 128)));
}

TEST(ImageTest, takesOneForTheScreensRatioWithoutAnApplication) {
    EXPECT_EQ(screenRatio(), 1.0);
}

} // namespace
} // namespace platform

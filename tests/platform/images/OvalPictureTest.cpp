#include "platform/images/OvalPicture.h"

#include "platform/images/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {
namespace {

QImage ovalOf(const QImage& picture, const QRectF& drawing, const QSizeF& size, qreal ratio = 1) {
    return ovalPicture(Image(picture), drawing, size, ratio).pixels(ratio);
}

// Each pixel is full inside the oval that fills width by height, clear outside, and lies between on the edge.
void expectOval(const QImage& pixels, double width, double height, QRgb color) {
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            const double dx = (x + 0.5) / (width / 2) - 1, dy = (y + 0.5) / (height / 2) - 1;
            const double radius = std::hypot(dx, dy);
            const double pixel = 2 / std::min(width, height);
            const QRgb found = reinterpret_cast<const QRgb*>(pixels.constScanLine(y))[x];
            if (radius < 1 - pixel) {
                ASSERT_EQ(found, color) << x << ' ' << y;
            } else if (radius > 1 + pixel) {
                ASSERT_EQ(found, clear) << x << ' ' << y;
            }
        }
    }
}

int partlyCovered(const QImage& pixels) {
    int count = 0;
    for (int y = 0; y < pixels.height(); ++y)
        for (int x = 0; x < pixels.width(); ++x)
            count += qAlpha(pixels.pixel(x, y)) > 0 && qAlpha(pixels.pixel(x, y)) < 255 ? 1 : 0;
    return count;
}

TEST(OvalPictureTest, fillsTheOvalOfItsSize) {
    const QImage round = ovalOf(plainPicture(40, 40, red), QRectF(0, 0, 40, 40), {40, 40});
    ASSERT_EQ(round.size(), QSize(40, 40));
    expectOval(round, 40, 40, red);
    const QImage flat = ovalOf(plainPicture(40, 40, red), QRectF(0, -5, 40, 40), {40, 30});
    ASSERT_EQ(flat.size(), QSize(40, 30));
    expectOval(flat, 40, 30, red);
}

TEST(OvalPictureTest, hasASmoothEdge) {
    const QImage pixels = ovalOf(plainPicture(40, 40, red), QRectF(0, 0, 40, 40), {40, 40});
    EXPECT_GT(partlyCovered(pixels), 60);
    EXPECT_LT(partlyCovered(pixels), 200);
}

TEST(OvalPictureTest, coversAsMuchAsACircleHas) {
    const QImage pixels = ovalOf(plainPicture(40, 40, red), QRectF(0, 0, 40, 40), {40, 40});
    double covered = 0;
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            covered += qAlpha(pixels.pixel(x, y)) / 255.0;
    EXPECT_NEAR(covered, 3.14159265 * 20 * 20, 12);
}

TEST(OvalPictureTest, isOfTheSizeThatIsAskedForEachTime) {
    const Image picture(plainPicture(64, 64, red));
    for (const int side : {40, 24, 40}) {
        const QSizeF size(side, side);
        const QImage pixels = ovalPicture(picture, QRectF({}, size), size, 1).pixels(1);
        EXPECT_EQ(pixels.size(), size.toSize());
        expectOval(pixels, side, side, red);
    }
}

TEST(OvalPictureTest, leavesThePictureItselfWhole) {
    const Image picture(plainPicture(40, 40, red));
    ASSERT_FALSE(ovalPicture(picture, QRectF(0, 0, 40, 40), QSizeF(40, 40), 1).isNull());
    EXPECT_EQ(picture.pixels(1), plainPicture(40, 40, red));
}

TEST(OvalPictureTest, isDrawnAtTheRatio) {
    const Image image = ovalPicture(Image(plainPicture(80, 80, red)), QRectF(0, 0, 40, 40), {40, 40}, 2);
    EXPECT_EQ(image.size(), QSizeF(40, 40));
    ASSERT_EQ(image.pixels(2).size(), QSize(80, 80));
    EXPECT_EQ(image.pixels(2).devicePixelRatio(), 2);
    expectOval(image.pixels(2), 80, 80, red);
}

TEST(OvalPictureTest, keepsTheDetailThatTheRatioHasRoomFor) {
    QImage picture = plainPicture(80, 80, red);
    for (int y = 0; y < 80; ++y)
        for (int x = 1; x < 80; x += 2)
            picture.setPixel(x, y, blue);
    const QImage twice = ovalOf(picture, QRectF(0, 0, 40, 40), {40, 40}, 2);
    EXPECT_EQ(twice.pixel(40, 40), red);
    EXPECT_EQ(twice.pixel(41, 40), blue);
    const QImage once = ovalOf(picture, QRectF(0, 0, 40, 40), {40, 40}, 1);
    EXPECT_TRUE(isNear(once.pixel(20, 20), qRgb(128, 0, 128), 3));
}

TEST(OvalPictureTest, takesAFractionalRatioAndSize) {
    const Image image = ovalPicture(Image(plainPicture(64, 64, red)), QRectF(0, 0, 40, 40), {40, 40}, 1.5);
    EXPECT_EQ(image.pixels(1.5).size(), QSize(60, 60));
    EXPECT_EQ(image.size(), QSizeF(40, 40));
    const Image fraction =
        ovalPicture(Image(plainPicture(64, 64, red)), QRectF(0, 0, 40.5, 40.5), {40.5, 40.5}, 1);
    EXPECT_EQ(fraction.pixels(1).size(), QSize(41, 41));
    EXPECT_EQ(fraction.size(), QSizeF(40.5, 40.5));
}

// Lines of red and blue, each so many pixels thick.
QImage linedPicture(int width, int height, int thickness) {
    QImage picture = plainPicture(width, height, red);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (y / thickness % 2 == 1)
                picture.setPixel(x, y, blue);
    return picture;
}

TEST(OvalPictureTest, isDrawnAtHalfPixels) {
    const QRgb between = qRgb(128, 0, 128);
    const QImage whole = ovalOf(linedPicture(40, 41, 1), QRectF(0, -1, 40, 41), {40, 40});
    EXPECT_EQ(whole.pixel(20, 20), blue);
    EXPECT_EQ(whole.pixel(20, 21), red);
    const QImage unscaled = ovalOf(linedPicture(40, 41, 1), QRectF(0, -0.5, 40, 41), {40, 40});
    const QImage shrunk = ovalOf(linedPicture(160, 164, 4), QRectF(0, -0.5, 40, 41), {40, 40});
    const QImage grown = ovalOf(linedPicture(40, 41, 1).scaled(20, 41), QRectF(0, -0.5, 40, 41), {40, 40});
    for (int y = 1; y < 39; ++y) {
        EXPECT_TRUE(isNear(unscaled.pixel(20, y), between, 3)) << y;
        EXPECT_TRUE(isNear(shrunk.pixel(20, y), between, 3)) << y;
        EXPECT_TRUE(isNear(grown.pixel(20, y), between, 3)) << y;
    }
}

TEST(OvalPictureTest, coversHalfOfAPixelWhereItsEdgeLiesInTheMiddle) {
    const QImage pixels = ovalOf(plainPicture(101, 9, red), QRectF(-30.5, 15.5, 101, 9), {40, 40});
    EXPECT_EQ(qAlpha(pixels.pixel(20, 14)), 0);
    EXPECT_NEAR(qAlpha(pixels.pixel(20, 15)), 128, 2);
    for (int y = 16; y < 24; ++y)
        EXPECT_EQ(pixels.pixel(20, y), red) << y;
    EXPECT_NEAR(qAlpha(pixels.pixel(20, 24)), 128, 2);
    EXPECT_EQ(qAlpha(pixels.pixel(20, 25)), 0);
}

TEST(OvalPictureTest, keepsThePicturesTransparency) {
    const QRgb half = qPremultiply(qRgba(255, 0, 0, 128));
    const QImage pixels = ovalOf(plainPicture(40, 40, half), QRectF(0, 0, 40, 40), {40, 40});
    EXPECT_EQ(reinterpret_cast<const QRgb*>(pixels.constScanLine(20))[20], half);
}

TEST(OvalPictureTest, mixesNoColourOfClearPixelsIn) {
    // Clear pixels that hold green: they must not tinge the border when the picture is shrunk.
    QImage picture(80, 80, QImage::Format_ARGB32);
    picture.fill(qRgba(0, 255, 0, 0));
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 41; ++x)
            picture.setPixel(x, y, red);
    const QImage pixels = ovalOf(picture, QRectF(0, 0, 40, 40), {40, 40});
    EXPECT_EQ(pixels.pixel(10, 20), red);
    EXPECT_TRUE(isNear(pixels.pixel(20, 20), qRgba(128, 0, 0, 128), 3));
    EXPECT_EQ(qAlpha(pixels.pixel(30, 20)), 0);
}

TEST(OvalPictureTest, growsAStripBeyondThePaintersCoordinates) {
    // Only the strip's pixel 8000 and its seam with the next show.
    QImage strip = plainPicture(1, 16000, red);
    strip.setPixel(0, 8000, blue);
    const QImage pixels = ovalOf(strip, QRectF(0, -320000, 40, 640000), {40, 40});
    EXPECT_TRUE(isNear(pixels.pixel(20, 20), blue, 8));
    EXPECT_TRUE(isNear(pixels.pixel(20, 36), qRgb(105, 0, 150), 8));
    const QImage elsewhere = ovalOf(strip, QRectF(0, -400000, 40, 640000), {40, 40});
    EXPECT_EQ(elsewhere.pixel(20, 20), red);
}

TEST(OvalPictureTest, isNullWithoutAPictureOrASize) {
    constexpr qreal nan = std::numeric_limits<qreal>::quiet_NaN();
    constexpr qreal infinity = std::numeric_limits<qreal>::infinity();
    const Image picture(plainPicture(4, 4, red));
    const QRectF drawing(0, 0, 40, 40);
    EXPECT_TRUE(ovalPicture(Image(), drawing, {40, 40}, 1).isNull());
    for (const qreal bad : {0.0, -1.0, nan, infinity, 1e300, 4097.0}) {
        EXPECT_TRUE(ovalPicture(picture, drawing, {bad, 40}, 1).isNull()) << bad;
        EXPECT_TRUE(ovalPicture(picture, drawing, {40, bad}, 1).isNull()) << bad;
    }
    EXPECT_TRUE(ovalPicture(picture, QRectF(0, nan, 40, 40), {40, 40}, 1).isNull());
    EXPECT_TRUE(ovalPicture(picture, QRectF(0, 0, infinity, 40), {40, 40}, 1).isNull());
}

TEST(OvalPictureTest, needsThePixelsAroundTheOval) {
    const QSizeF size(40, 40);
    // As large as it is: the middle, and two pixels more for the smooth scaling.
    EXPECT_EQ(pixelsShownInOval({1000, 500}, QRectF(-480, -230, 1000, 500), size, 1),
              (KeptPixels{QSize(1000, 500), QRect(478, 228, 44, 44)}));
    EXPECT_EQ(pixelsShownInOval({1000, 500}, QRectF(-480, -230, 1000, 500), size, 2),
              (KeptPixels{QSize(1000, 500), QRect(478, 228, 44, 44)}));
    // Shrunk, as the whole picture would be.
    EXPECT_EQ(pixelsShownInOval({500, 1000}, QRectF(0, -20, 40, 80), size, 1),
              (KeptPixels{QSize(40, 80), QRect(0, 18, 40, 44)}));
    EXPECT_EQ(pixelsShownInOval({500, 1000}, QRectF(0, -20, 40, 80), size, 2),
              (KeptPixels{QSize(80, 160), QRect(0, 38, 80, 84)}));
}

TEST(OvalPictureTest, needsAllPixelsOfASmallPicture) {
    EXPECT_EQ(pixelsShownInOval({256, 256}, QRectF(0, 0, 40, 40), {40, 40}, 1), allPixels({256, 256}));
    EXPECT_EQ(pixelsShownInOval({512, 128}, QRectF(-236, -44, 512, 128), {40, 40}, 1), allPixels({512, 128}));
    EXPECT_EQ(pixelsShownInOval({257, 256}, QRectF(0, 0, 40, 40), {40, 40}, 1), allPixels({40, 40}));
}

TEST(OvalPictureTest, needsAPixelWhereNothingIsDrawn) {
    constexpr qreal nan = std::numeric_limits<qreal>::quiet_NaN();
    const KeptPixels one = allPixels({1, 1});
    EXPECT_EQ(pixelsShownInOval({500, 1000}, QRectF(0, 0, 40, nan), {40, 40}, 1), one);
    EXPECT_EQ(pixelsShownInOval({500, 1000}, QRectF(0, 0, 40, 80), {40, 0}, 1), one);
    EXPECT_EQ(pixelsShownInOval({500, 1000}, QRectF(0, 900, 40, 80), {40, 40}, 1), one);
}

TEST(OvalPictureTest, isAPixelWhereTheSizeIsLess) {
    const Image image =
        ovalPicture(Image(plainPicture(4, 4, red)), QRectF(0, 0, 1e-9, 1e-9), {1e-9, 1e-9}, 1);
    EXPECT_EQ(image.pixels(1).size(), QSize(1, 1));
}

} // namespace
} // namespace platform

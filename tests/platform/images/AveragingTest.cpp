#include "platform/images/Averaging.h"

#include "platform/images/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace platform {
namespace {

TEST(AveragingTest, keepsAPlainColourAtEachSize) {
    for (const QRgb color : {0xffffffffU, 0xff0180feU, 0x80402010U, 0x01010101U}) {
        for (int side = 1; side <= 67; ++side)
            ASSERT_EQ(averaged(plainPicture(67, 67, color), {side, 68 - side}),
                      plainPicture(side, 68 - side, color));
    }
    EXPECT_EQ(averaged(plainPicture(16000, 1, red), {7, 1}), plainPicture(7, 1, red));
    EXPECT_EQ(averaged(plainPicture(1, 16000, red), {1, 1}), plainPicture(1, 1, red));
}

TEST(AveragingTest, takesTheMeanOfWholePixels) {
    QImage picture = plainPicture(4, 2, qRgb(0, 0, 0));
    picture.setPixel(0, 0, qRgb(200, 0, 40));
    picture.setPixel(3, 1, qRgb(0, 100, 0));
    const QImage result = averaged(picture, {2, 1});
    EXPECT_EQ(result.pixel(0, 0), qRgb(50, 0, 10));
    EXPECT_EQ(result.pixel(1, 0), qRgb(0, 25, 0));
}

TEST(AveragingTest, countsAPixelByTheShareThatIsCovered) {
    QImage picture = plainPicture(3, 1, qRgb(0, 0, 0));
    picture.setPixel(1, 0, qRgb(240, 240, 240)); // half of it falls to each of the two
    const QImage result = averaged(picture, {2, 1});
    EXPECT_TRUE(isNear(result.pixel(0, 0), qRgb(80, 80, 80), 1));
    EXPECT_TRUE(isNear(result.pixel(1, 0), qRgb(80, 80, 80), 1));
}

TEST(AveragingTest, leavesNoChannelBeyondItsAlpha) {
    QImage picture = plainPicture(97, 61, clear);
    std::mt19937 random(7);
    for (int y = 0; y < 61; ++y)
        for (int x = 0; x < 97; ++x)
            reinterpret_cast<QRgb*>(picture.scanLine(y))[x] = qPremultiply(static_cast<QRgb>(random()));
    const QImage result = averaged(picture, {40, 33});
    for (int y = 0; y < 33; ++y) {
        for (int x = 0; x < 40; ++x) {
            const QRgb pixel = reinterpret_cast<const QRgb*>(result.constScanLine(y))[x];
            ASSERT_LE(std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)}), qAlpha(pixel));
        }
    }
}

} // namespace
} // namespace platform

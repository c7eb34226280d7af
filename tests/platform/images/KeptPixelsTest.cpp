#include "platform/images/KeptPixels.h"

#include <gtest/gtest.h>

#include <limits>

namespace platform {
namespace {

KeptPixels whole(int width, int height) {
    return {QSize(width, height), QRect(0, 0, width, height)};
}

TEST(KeptPixelsTest, shrinksInProportionToWhatAViewShows) {
    const QSizeF view(38, 38);
    EXPECT_EQ(pixelsShownInView({6000, 6000}, view, 1), whole(38, 38));
    EXPECT_EQ(pixelsShownInView({6000, 3000}, view, 1), whole(38, 19));
    EXPECT_EQ(pixelsShownInView({1000, 6000}, view, 1), whole(6, 38));
    EXPECT_EQ(pixelsShownInView({6000, 6000}, {60, 30}, 1), whole(30, 30));
}

TEST(KeptPixelsTest, keepsWhatAViewShowsAtTheRatio) {
    EXPECT_EQ(pixelsShownInView({6000, 6000}, {38, 38}, 2), whole(76, 76));
    EXPECT_EQ(pixelsShownInView({6000, 6000}, {38, 38}, 1.25), whole(48, 48));
}

TEST(KeptPixelsTest, neverEnlarges) {
    EXPECT_EQ(pixelsShownInView({200, 200}, {150, 150}, 2), whole(200, 200));
    EXPECT_EQ(pixelsShownInView({200, 100}, {300, 300}, 1), whole(200, 100));
    EXPECT_EQ(pixelsShownInView({200, 100}, {1e9, 1e9}, 8), whole(200, 100));
}

TEST(KeptPixelsTest, keepsAPixelOfALineThatIsThinnerThanOne) {
    EXPECT_EQ(pixelsShownInView({100000, 1}, {38, 38}, 1), whole(38, 1));
}

TEST(KeptPixelsTest, keepsAPixelForAViewThatShowsNothing) {
    constexpr qreal nan = std::numeric_limits<qreal>::quiet_NaN();
    for (const QSizeF& view : {QSizeF(), QSizeF(0, 38), QSizeF(38, -5), QSizeF(nan, 38), QSizeF(38, nan)})
        EXPECT_EQ(pixelsShownInView({6000, 6000}, view, 1), whole(1, 1));
}

TEST(KeptPixelsTest, keepsPicturesOfUsualSizesWhole) {
    EXPECT_EQ(pixelsShownInView({128, 128}, {4, 4}, 1), whole(128, 128));
    EXPECT_EQ(pixelsShownInView({1024, 16}, {4, 4}, 1), whole(1024, 16));
    EXPECT_EQ(pixelsShownInView({129, 128}, {4, 4}, 1), whole(4, 4));
    EXPECT_EQ(pixelsShownInView({200000, 200000}, {4, 4}, 1), whole(4, 4)); // as many as 2 to the 35th
}

} // namespace
} // namespace platform

#include "center/FailureWindow.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>

#include <utility>

// On a desktop of the window's colour nothing else would tell where it ends.
TEST(FailureWindow, hasAnOutlineAllAroundWhereItHasNoFrame) {
    center::FailureWindow window;
    window.open({});
    const QImage picture = window.grab().toImage();
    const int right = picture.width() - 1;
    const int bottom = picture.height() - 1;
    const QRgb outline = picture.pixel(0, 0);
    EXPECT_NE(outline, picture.pixel(1, 1));
    for (int x = 0; x <= right; ++x)
        ASSERT_EQ(std::pair(picture.pixel(x, 0), picture.pixel(x, bottom)), std::pair(outline, outline)) << x;
    for (int y = 0; y <= bottom; ++y)
        ASSERT_EQ(std::pair(picture.pixel(0, y), picture.pixel(right, y)), std::pair(outline, outline)) << y;
}

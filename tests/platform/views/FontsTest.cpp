#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"

#include <gtest/gtest.h>

using platform::exactFont;

TEST(Fonts, setAWholeSizeAsItIs) {
    const auto exact = exactFont(platform::systemFont(15));
    EXPECT_EQ(exact.font.pixelSize(), 15);
    EXPECT_EQ(exact.scale, 1);
}

TEST(Fonts, setAFractionalSizeInTheNextWholeOneAndScaleItDown) {
    const auto exact = exactFont(platform::boldSystemFont(12.8));
    EXPECT_EQ(exact.font.pixelSize(), 13);
    EXPECT_NEAR(exact.scale, 12.8 / 13, 1e-3);
    EXPECT_TRUE(exact.font.bold());
}

TEST(Fonts, measureAFractionalSizeInProportion) {
    const QString text = QStringLiteral("$1,234,567.00");
    const double whole = platform::textWidth(text, platform::boldSystemFont(13));
    EXPECT_NEAR(platform::textWidth(text, platform::boldSystemFont(12.8)), whole * 12.8 / 13, 0.05);
}

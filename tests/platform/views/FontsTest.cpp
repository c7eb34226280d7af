#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"

#include <gtest/gtest.h>

using platform::exactFont;

namespace {

bool looksForOthers(const QString& text) {
    return !(exactFont(platform::systemFont(15), text).font.styleStrategy() & QFont::NoFontMerging);
}

} // namespace

TEST(Fonts, setAWholeSizeAsItIs) {
    const auto exact = exactFont(platform::systemFont(15), QStringLiteral("Rent"));
    EXPECT_EQ(exact.font.pixelSize(), 15);
    EXPECT_EQ(exact.scale, 1);
}

TEST(Fonts, setAFractionalSizeInTheNextWholeOneAndScaleItDown) {
    const auto exact = exactFont(platform::boldSystemFont(12.8), QStringLiteral("$1"));
    EXPECT_EQ(exact.font.pixelSize(), 13);
    EXPECT_NEAR(exact.scale, 12.8 / 13, 1e-3);
    EXPECT_TRUE(exact.font.bold());
}

TEST(Fonts, measureAFractionalSizeInProportion) {
    const QString text = QStringLiteral("$1,234,567.00");
    const double whole = platform::textWidth(text, platform::boldSystemFont(13));
    EXPECT_NEAR(platform::textWidth(text, platform::boldSystemFont(12.8)), whole * 12.8 / 13, 0.05);
}

TEST(Fonts, looksForNoOtherFontForLatinLetters) {
    EXPECT_FALSE(looksForOthers(QStringLiteral("Rent, Übung, $1.00")));
    EXPECT_FALSE(looksForOthers(QString()));
}

TEST(Fonts, looksForOtherFontsForOtherScripts) {
    EXPECT_TRUE(looksForOthers(QStringLiteral("إيجار")));
    EXPECT_TRUE(looksForOthers(QStringLiteral("ジム")));
    EXPECT_TRUE(looksForOthers(QString::fromUcs4(U"\U0001F600")));
}

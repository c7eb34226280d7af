#include "bridge/icons/Icons.h"

#include "bridge/icons/GlyphFiles.h"
#include "exchange/TodayWidgetLogic.h"
#include "support/Containers.h"

#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace bridge {
namespace {

Plan plan(std::string category, std::string name = {}, std::string payee = {},
          Direction direction = Direction::Expense) {
    Plan plan;
    plan.category = std::move(category);
    plan.name = std::move(name);
    plan.payee = std::move(payee);
    plan.direction = direction;
    return plan;
}

// --- which glyph

TEST(IconsTest, asksTheCategoryThenTheNameThenThePayee) {
    EXPECT_EQ(iconFor(plan("Rent", "Electricity", "Water works")), "rent");
    EXPECT_EQ(iconFor(plan("Other", "Electricity", "Water works")), "electricity");
    EXPECT_EQ(iconFor(plan("", "March", "Water works")), "water");
}

TEST(IconsTest, hasANeutralGlyphForWhatNoWordTellsOf) {
    EXPECT_EQ(iconFor(plan("")), "planned");
    EXPECT_EQ(iconFor(plan("Other", "March", "Anna")), "planned");
}

TEST(IconsTest, showsAnIncomeAsASalaryUnlessAWordTellsMore) {
    EXPECT_EQ(iconFor(plan("Income", "March", "Anna", Direction::Income)), "salary");
    EXPECT_EQ(iconFor(plan("Income:Rent", "", "", Direction::Income)), "rent");
}

TEST(IconsTest, showsATransferAsOneWhateverItsWords) {
    EXPECT_EQ(iconFor(plan("Rent", "Electricity", "", Direction::Transfer)), "transfer");
    EXPECT_EQ(iconFor(plan("", "", "", Direction::Transfer)), "transfer");
}

TEST(IconsTest, hasNoFileForAnotherName) {
    for (const char* name : {"", "Home", "home.png", "../home", "none"})
        EXPECT_TRUE(iconFile(name).empty()) << name;
}

// --- the glyphs themselves

QString nameOf(const GlyphFile& glyph) {
    return QString::fromUtf8(glyph.name.data(), static_cast<qsizetype>(glyph.name.size()));
}

TEST(GlyphsTest, areThoseOfTheFolder) {
    QStringList names;
    for (const GlyphFile& glyph : glyphFiles())
        names += nameOf(glyph) + QStringLiteral(".svg");
    const QDir folder(QStringLiteral(KORVEL_SOURCE_DIR "/src/bridge/icons/glyphs"));
    EXPECT_EQ(names, folder.entryList(QDir::Files, QDir::Name));
    EXPECT_EQ(names.size(), 40);
}

TEST(GlyphsTest, haveNamesOfGlyphsAndNotOfPictures) {
    for (const GlyphFile& glyph : glyphFiles())
        EXPECT_LT(nameOf(glyph).size(), 23) << glyph.name;
}

// What the widget shows of each glyph, read from the account's folder as it does.
class ShownGlyphsTest : public testing::Test {
protected:
    static constexpr qreal side = 38; // of a row's icon, in points
    static constexpr int pixels = 76;

    ShownGlyphsTest() {
        for (const GlyphFile& glyph : glyphFiles())
            containers.write("-/icons/" + std::string(glyph.name) + ".png", iconFile(glyph.name));
    }

    static QImage shown(const GlyphFile& glyph) {
        return TodayWidgetLogic::imageByName(nameOf(glyph), QRectF(0, 0, side, side)).pixels(1);
    }

    support::Containers containers;
};

// Where more than half of a pixel is painted.
QRect inkOf(const QImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 127)
                ink |= QRect(x, y, 1, 1);
    return ink;
}

double coverage(const QImage& image) {
    double sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += qAlpha(image.pixel(x, y));
    return sum / 255 / image.width() / image.height();
}

TEST_F(ShownGlyphsTest, haveTwoPixelsToAPointOfARow) {
    for (const GlyphFile& glyph : glyphFiles())
        EXPECT_EQ(shown(glyph).size(), QSize(pixels, pixels)) << glyph.name;
}

TEST_F(ShownGlyphsTest, areWhite) {
    for (const GlyphFile& glyph : glyphFiles()) {
        const QImage image = shown(glyph);
        int opaque = 0, white = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                opaque += qAlpha(image.pixel(x, y)) == 255 ? 1 : 0;
                white += image.pixel(x, y) == 0xFFFFFFFF ? 1 : 0;
            }
        EXPECT_GT(opaque, 0) << glyph.name;
        EXPECT_EQ(white, opaque) << glyph.name;
    }
}

TEST_F(ShownGlyphsTest, areInTheMiddleAndOfOneWeight) {
    for (const GlyphFile& glyph : glyphFiles()) {
        const QImage image = shown(glyph);
        const QRect ink = inkOf(image);
        EXPECT_GE(ink.left(), 4) << glyph.name;
        EXPECT_GE(ink.top(), 4) << glyph.name;
        EXPECT_LT(ink.right(), pixels - 4) << glyph.name;
        EXPECT_LT(ink.bottom(), pixels - 4) << glyph.name;
        EXPECT_LE(std::abs(ink.left() - (pixels - 1 - ink.right())), 3) << glyph.name;
        EXPECT_LE(std::abs(ink.top() - (pixels - 1 - ink.bottom())), 3) << glyph.name;
        EXPECT_GE(std::max(ink.width(), ink.height()), 52) << glyph.name;
        EXPECT_GT(coverage(image), 0.12) << glyph.name;
        EXPECT_LT(coverage(image), 0.34) << glyph.name;
    }
}

// How much of two glyphs' ink is not common to both.
double difference(const QImage& a, const QImage& b) {
    double apart = 0, all = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const int first = qAlpha(a.pixel(x, y)), second = qAlpha(b.pixel(x, y));
            apart += std::abs(first - second);
            all += std::max(first, second);
        }
    return apart / all;
}

TEST_F(ShownGlyphsTest, areNotAlike) {
    const auto glyphs = glyphFiles();
    std::vector<QImage> images;
    for (const GlyphFile& glyph : glyphs)
        images.push_back(shown(glyph));
    for (std::size_t a = 0; a < glyphs.size(); ++a)
        for (std::size_t b = 0; b < a; ++b)
            EXPECT_GT(difference(images[a], images[b]), 0.25) << glyphs[a].name << ' ' << glyphs[b].name;
}

} // namespace
} // namespace bridge

#include "platform/views/Label.h"

#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"
#include "support/Application.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <tuple>

using platform::Label;
using LineBreakMode = platform::Label::LineBreakMode;

namespace {

const QString quickFox = QStringLiteral("The quick brown fox jumps over the lazy dog, wgjy");

class Labels : public testing::Test {
protected:
    Labels() {
        label.setLabelFont(platform::systemFont(15));
        label.setFrame(QRectF(0, 0, 200, 24));
    }

    QRect ink() { return support::inkOf(support::painted(label)); }

    Label label;
};

TEST_F(Labels, paintNothingWithoutText) {
    EXPECT_TRUE(ink().isNull());
    label.setStringValue(QStringLiteral("   "));
    EXPECT_TRUE(ink().isNull());
}

TEST_F(Labels, areWhiteAtFirstAndThenOfTheirColour) {
    label.setStringValue(QStringLiteral("████"));
    const QPoint inside = ink().center();
    EXPECT_EQ(support::painted(label).pixelColor(inside), QColor(Qt::white));
    label.setTextColor(QColor(10, 200, 30));
    EXPECT_EQ(support::painted(label).pixelColor(inside), QColor(10, 200, 30));
}

TEST_F(Labels, standInTheMiddleOfTheirHeight) {
    label.setFrame(QRectF(0, 0, 200, 100));
    label.setStringValue(QStringLiteral("x"));
    EXPECT_NEAR(ink().center().y(), 50, 5);
}

// --- alignment

struct Alignment {
    const char* name;
    Qt::Alignment alignment;
    Qt::LayoutDirection direction;
    bool isAtTheLeft;
};

class LabelAlignment : public Labels, public testing::WithParamInterface<Alignment> {};

TEST_P(LabelAlignment, followsTheDirectionOfReading) {
    label.setLayoutDirection(GetParam().direction);
    label.setAlignment(GetParam().alignment | Qt::AlignVCenter);
    for (const auto mode : {LineBreakMode::Clipping, LineBreakMode::TruncatingTail}) {
        label.setLineBreakMode(mode);
        label.setStringValue(QStringLiteral("Hxx"));
        const QRect at = ink();
        ASSERT_FALSE(at.isNull());
        EXPECT_EQ(at.left() < 5, GetParam().isAtTheLeft) << at.left();
        EXPECT_EQ(at.right() > 194, !GetParam().isAtTheLeft) << at.right();
        EXPECT_EQ(at.center().x() < 100, GetParam().isAtTheLeft);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Sides, LabelAlignment,
    testing::Values(Alignment{"leadingLeftToRight", Qt::AlignLeading, Qt::LeftToRight, true},
                    Alignment{"leadingRightToLeft", Qt::AlignLeading, Qt::RightToLeft, false},
                    Alignment{"trailingLeftToRight", Qt::AlignTrailing, Qt::LeftToRight, false},
                    Alignment{"trailingRightToLeft", Qt::AlignTrailing, Qt::RightToLeft, true}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Labels, standInTheMiddleInBothDirections) {
    label.setAlignment(Qt::AlignCenter);
    label.setStringValue(QStringLiteral("HH"));
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        label.setLayoutDirection(direction);
        EXPECT_NEAR(ink().center().x(), 100, 2);
    }
}

// --- elision

// Whether the picture ends in the dots of an ellipsis that no edge cuts.
class Elision : public Labels, public testing::WithParamInterface<int> {};

TEST_P(Elision, isNeverClipped) {
    label.setLineBreakMode(LineBreakMode::TruncatingTail);
    label.setStringValue(quickFox);
    label.setFrame(QRectF(0, 0, GetParam(), 24));
    const QImage narrow = support::painted(label);
    // The same text that is shown, with all the room that it wants.
    const QFontMetricsF metrics(label.labelFont());
    Label roomy;
    roomy.setLabelFont(label.labelFont());
    roomy.setStringValue(metrics.elidedText(quickFox, Qt::ElideRight, GetParam()));
    roomy.setFrame(QRectF(0, 0, 600, 24));
    const QImage wide = support::painted(roomy);
    ASSERT_TRUE(roomy.stringValue().endsWith(QChar(0x2026)));
    EXPECT_EQ(support::inkOf(narrow), support::inkOf(wide)) << qPrintable(roomy.stringValue());
    EXPECT_EQ(narrow, wide.copy(narrow.rect()));
}

INSTANTIATE_TEST_SUITE_P(Widths, Elision, testing::Range(30, 200, 17));

TEST_F(Labels, thatClipShowTheirTextsHead) {
    label.setStringValue(quickFox);
    label.setFrame(QRectF(0, 0, 60, 24));
    const QImage narrow = support::painted(label);
    label.setFrame(QRectF(0, 0, 600, 24));
    EXPECT_EQ(narrow, support::painted(label).copy(narrow.rect()));
}

TEST_F(Labels, elideNothingThatFits) {
    label.setStringValue(QStringLiteral("-1,234.56 €"));
    label.setFrame(QRectF(0, 0, std::ceil(platform::textWidth(label.stringValue(), label.labelFont())), 24));
    const QImage clipping = support::painted(label);
    label.setLineBreakMode(LineBreakMode::TruncatingTail);
    EXPECT_EQ(support::painted(label), clipping);
}

TEST_F(Labels, ofNoWidthPaintNothingAndDoNotStall) {
    label.setLineBreakMode(LineBreakMode::TruncatingTail);
    label.setStringValue(quickFox);
    label.setFrame(QRectF(0, 0, 1, 24));
    EXPECT_LE(ink().width(), 1);
}

// --- one line

TEST_F(Labels, areOfOneLine) {
    label.setFrame(QRectF(0, 0, 200, 24));
    label.setStringValue(QStringLiteral("one two"));
    const QImage plain = support::painted(label);
    for (const char* text :
         {"one\ntwo", "one\ttwo", "one\rtwo", "one\r\ntwo", "one\xe2\x80\xa8two", "one\xe2\x80\xa9two"}) {
        label.setStringValue(QString::fromUtf8(text));
        EXPECT_EQ(support::painted(label), plain) << text;
        EXPECT_EQ(label.stringValue(), QString::fromUtf8(text)) << "the value itself is kept";
    }
}

TEST(SingleLine, leavesATextWithoutBreaksAsItIs) {
    EXPECT_EQ(platform::singleLine(QStringLiteral("a  b ")), QStringLiteral("a  b "));
    EXPECT_EQ(platform::singleLine(QString()), QString());
}

TEST(SingleLine, makesEveryBreakOneSpace) {
    EXPECT_EQ(platform::singleLine(QStringLiteral("\na\n\nb\r\nc\t")), QStringLiteral(" a  b c "));
}

TEST_F(Labels, showTheHeadOfAMegabyte) {
    const QString head = QStringLiteral("Rent, water and heat ");
    label.setStringValue(head.repeated(50'000)); // 1,050,000 characters
    const QImage big = support::painted(label);
    label.setStringValue(head.repeated(20));
    EXPECT_EQ(big, support::painted(label));
}

// Shaped in full a megabyte takes some 500 times as long as what is ever shown of it.
TEST_F(Labels, paintAMegabyteAsFastAsAPage) {
    label.setLineBreakMode(LineBreakMode::TruncatingTail);
    const auto cost = [this](const QString& text) {
        label.setStringValue(text);
        auto least = std::numeric_limits<std::clock_t>::max();
        for (int i = 0; i < 5; ++i) {
            const std::clock_t start = std::clock(); // of this process, not of the wall
            support::painted(label);
            least = std::min(least, std::clock() - start);
        }
        return least;
    };
    const QString page(2000, QLatin1Char('x'));
    EXPECT_LT(cost(page.repeated(525)), 20 * cost(page) + CLOCKS_PER_SEC / 1000);
}

// --- size

TEST_F(Labels, sizeToFitTheirTextWithItsOriginKept) {
    label.setFrame(QRectF(7, 9, 1, 1));
    label.setStringValue(QStringLiteral("-1,234.56 €"));
    label.sizeToFit();
    const QFontMetricsF metrics(label.labelFont());
    EXPECT_EQ(label.frame(), QRectF(7, 9, std::ceil(metrics.horizontalAdvance(label.stringValue())),
                                    std::ceil(metrics.height())));
}

TEST_F(Labels, sizedToFitElideNothing) {
    label.setLineBreakMode(LineBreakMode::TruncatingTail);
    for (const QString& text :
         {QStringLiteral("f"), QStringLiteral("Wj"), QStringLiteral("٢٫٥٠٠"), quickFox}) {
        label.setStringValue(text);
        label.sizeToFit();
        const QImage fitting = support::painted(label);
        label.setFrame(QRectF(0, 0, label.width() + 100, label.height()));
        EXPECT_EQ(fitting, support::painted(label).copy(fitting.rect())) << qPrintable(text);
    }
}

TEST_F(Labels, withoutTextFitInNoWidth) {
    label.sizeToFit();
    EXPECT_EQ(label.frame().width(), 0);
    EXPECT_GT(label.frame().height(), 0);
}

TEST_F(Labels, sizeToFitALineBreakAsASpace) {
    label.setStringValue(QStringLiteral("one two"));
    label.sizeToFit();
    const QSizeF plain = label.frame().size();
    label.setStringValue(QStringLiteral("one\ntwo"));
    label.sizeToFit();
    EXPECT_EQ(label.frame().size(), plain);
}

// --- fonts

TEST(SystemFont, isOfItsSizeInDeviceIndependentPixels) {
    EXPECT_EQ(platform::systemFont(15).pixelSize(), 15);
    EXPECT_EQ(QFontInfo(platform::systemFont(15)).family(), QFontInfo(QFont()).family());
    EXPECT_FALSE(platform::systemFont(15).bold());
}

TEST(SystemFont, mayBeOfAFractionOfAPoint) {
    const double dpi = QGuiApplication::primaryScreen()->logicalDotsPerInchY();
    EXPECT_NEAR(platform::systemFont(12.5).pointSizeF() * dpi / 72, 12.5, 1e-9);
    EXPECT_NEAR(platform::boldSystemFont(0.5).pointSizeF() * dpi / 72, 0.5, 1e-9);
}

TEST(SystemFont, mayBeBold) {
    EXPECT_TRUE(platform::boldSystemFont(14).bold());
    EXPECT_EQ(platform::boldSystemFont(14).pixelSize(), 14);
}

TEST(SystemFont, ofNoSizeIsNotRefused) {
    EXPECT_GE(platform::textWidth(QStringLiteral("m"), platform::systemFont(0)), 0);
    EXPECT_GE(platform::textWidth(QStringLiteral("m"), platform::systemFont(-1)), 0);
}

} // namespace

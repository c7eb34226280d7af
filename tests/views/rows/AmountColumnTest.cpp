#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"
#include "views/rows/RowTest.h"

#include <limits>
#include <string>

namespace rows {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Column : Named {
    double maxSum;
    double label, badge, titleSpace;
};

class AmountColumnTest : public RowTest, public testing::WithParamInterface<Column> {};

void expectColumn(const TodayTableCellView& row, double label, double badge, double titleSpace) {
    EXPECT_EQ(row.sumWidthLayoutConstraint->constant(), label);
    EXPECT_EQ(row.sumBackgroundWidthLayoutConstraint->constant(), badge);
    EXPECT_EQ(row.titleRightSpaceLayoutConstraint->constant(), titleSpace);
}

void setColumn(const TodayTableCellView& row, double label, double badge, double titleSpace) {
    row.sumWidthLayoutConstraint->setConstant(label);
    row.sumBackgroundWidthLayoutConstraint->setConstant(badge);
    row.titleRightSpaceLayoutConstraint->setConstant(titleSpace);
}

TEST_P(AmountColumnTest, isWithinItsBounds) {
    const auto row = makeRow();
    row->configureForItem(item(), GetParam().maxSum);
    expectColumn(*row, GetParam().label, GetParam().badge, GetParam().titleSpace);
}

INSTANTIATE_TEST_SUITE_P(
    Widths, AmountColumnTest,
    testing::Values(Column{{"narrow"}, 30, 52, 74, 81}, Column{{"least"}, 50, 52, 74, 81},
                    Column{{"middle"}, 100, 102, 124, 131},
                    Column{{"fraction"}, 99.25, 101.25, 123.25, 130.25}, Column{{"most"}, 140, 142, 164, 171},
                    Column{{"wide"}, 200, 142, 164, 171}, Column{{"infinite"}, infinity, 142, 164, 171},
                    Column{{"none"}, 0, 52, 74, 81}, Column{{"negative"}, -7, 52, 74, 81},
                    Column{{"infinitelyNegative"}, -infinity, 52, 74, 81}),
    nameOfCase<Column>);

class AmountTest : public RowTest {
protected:
    // An item whose amount has a width in points in the bold system font of size 16.
    static TodayTransactionPtr itemAsWideAs(double width) {
        auto values = rent();
        values.amount = textAsWideAs(width, platform::boldSystemFont(16));
        return item(values);
    }

    static double widthOf(const TodayTransactionPtr& item) {
        return platform::textWidth(item->amount, platform::boldSystemFont(16));
    }
};

TEST_F(AmountTest, theColumnIsComparedWithTheWidthBeforeTwoIsAdded) {
    const auto row = makeRow();
    setColumn(*row, 100, 7, 8);
    row->configureForItem(item(), 100);
    expectColumn(*row, 100, 7, 8);
}

TEST_F(AmountTest, aColumnThatHoldsTwoMoreIsWrittenAnew) {
    const auto row = makeRow();
    setColumn(*row, 102, 7, 8);
    row->configureForItem(item(), 100);
    expectColumn(*row, 102, 124, 131);
}

TEST_F(AmountTest, theWidthIsComparedAfterItsClamping) {
    const auto row = makeRow();
    setColumn(*row, 140, 7, 8);
    row->configureForItem(item(), 200);
    expectColumn(*row, 140, 7, 8);
}

TEST_F(AmountTest, noNumberLeavesColumnAndFontOfTheInterfaceFile) {
    const auto row = makeRow();
    setColumn(*row, 61, 62, 63);
    const QFont font = row->sumLabel->labelFont();
    row->configureForItem(itemAsWideAs(175), nan);
    expectColumn(*row, 61, 62, 63);
    EXPECT_EQ(row->sumLabel->labelFont(), font);
}

TEST_F(AmountTest, noNumberLeavesColumnAndFontOfTheLastItem) {
    const auto row = makeRow();
    row->configureForItem(itemAsWideAs(175), 200);
    const QFont font = row->sumLabel->labelFont();
    ASSERT_LT(sizeOf(font), 16);
    row->configureForItem(item(), nan);
    expectColumn(*row, 142, 164, 171);
    EXPECT_EQ(row->sumLabel->labelFont(), font);
}

TEST_F(AmountTest, noNumberLeavesNothingElseAsItWas) {
    const auto row = makeRow();
    row->configureForItem(overdueItem(), 60);
    auto values = rent();
    values.name = QStringLiteral("Gym");
    values.amount = QStringLiteral("7.00");
    values.isIncome = true;
    values.isExpense = false;
    const auto gym = item(values);
    row->configureForItem(gym, nan);
    EXPECT_EQ(row->item, gym);
    EXPECT_EQ(row->titleLabel->stringValue(), values.name);
    EXPECT_EQ(row->sumLabel->stringValue(), values.amount);
    EXPECT_EQ(row->sumBackgroundBox->fillColor(), row->sumBackgroundIncomeColor);
    EXPECT_EQ(row->subtitleLabel->textColor(), row->mainColor);
}

TEST_F(AmountTest, isBoldOfSizeSixteen) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    EXPECT_TRUE(row->sumLabel->labelFont().bold());
    EXPECT_EQ(sizeOf(row->sumLabel->labelFont()), 16);
}

TEST_F(AmountTest, oneThatIsNarrowerThanItsColumnKeepsSizeSixteen) {
    const auto row = makeRow();
    const auto narrow = itemAsWideAs(60);
    ASSERT_NEAR(widthOf(narrow), 60, 1);
    row->configureForItem(narrow, 100);
    EXPECT_EQ(sizeOf(row->sumLabel->labelFont()), 16);
}

TEST_F(AmountTest, oneThatIsWiderThanTheWidestColumnShrinksInProportion) {
    const auto row = makeRow();
    const auto wide = itemAsWideAs(175);
    ASSERT_NEAR(widthOf(wide), 175, 1);
    row->configureForItem(wide, 200);
    EXPECT_TRUE(row->sumLabel->labelFont().bold());
    EXPECT_NEAR(sizeOf(row->sumLabel->labelFont()), 16 * 140 / widthOf(wide), 0.001);
    EXPECT_NEAR(sizeOf(row->sumLabel->labelFont()), 12.8, 0.1);
}

TEST_F(AmountTest, oneThatIsAsWideAsItsColumnKeepsSizeSixteen) {
    const auto row = makeRow();
    const auto wide = itemAsWideAs(120);
    row->configureForItem(wide, widthOf(wide));
    EXPECT_EQ(sizeOf(row->sumLabel->labelFont()), 16);
    row->configureForItem(wide, std::nextafter(widthOf(wide), 0));
    EXPECT_NEAR(sizeOf(row->sumLabel->labelFont()), 16, 0.001); // shrunk, by less than one sees
    row->configureForItem(wide, widthOf(wide) - 1);
    EXPECT_LT(sizeOf(row->sumLabel->labelFont()), 15.9);
}

TEST_F(AmountTest, aNarrowOneAfterAWideOneHasSizeSixteenAgain) {
    const auto row = makeRow();
    row->configureForItem(itemAsWideAs(175), 200);
    row->configureForItem(item(), 200);
    EXPECT_EQ(sizeOf(row->sumLabel->labelFont()), 16);
}

// The font size is a fraction and is drawn unrounded.
TEST_F(AmountTest, aShrunkOneFitsItsLabel) {
    const auto row = makeRow();
    for (const double width : {141.0, 150.0, 175.0, 199.0, 250.0, 400.0}) {
        const auto wide = itemAsWideAs(width);
        row->configureForItem(wide, width);
        EXPECT_LE(platform::textWidth(wide->amount, row->sumLabel->labelFont()),
                  row->sumLabel->frame().width())
            << width;
    }
}

TEST_F(AmountTest, theBadgesOfOneListHaveOneWidth) {
    const auto first = makeRow(), second = makeRow();
    first->configureForItem(itemAsWideAs(30), 99.25);
    second->configureForItem(itemAsWideAs(99), 99.25);
    EXPECT_EQ(first->sumBackgroundView->frame(), second->sumBackgroundView->frame());
    EXPECT_EQ(first->sumBackgroundBox->frame(), second->sumBackgroundBox->frame());
    EXPECT_EQ(first->sumLabel->frame(), second->sumLabel->frame());
}

} // namespace
} // namespace rows

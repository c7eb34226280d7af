#include "controller/ControllerTest.h"

#include "platform/views/Fonts.h"

#include <QFontMetricsF>

#include <limits>

namespace controller {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

class RowsTest : public ControllerTest {
protected:
    [[nodiscard]] std::shared_ptr<platform::View> viewOf(std::int64_t number) const {
        return controller->tableViewViewForTableColumnRow(table(), 0, number);
    }

    // The width of the amounts of a list.
    [[nodiscard]] double widthOf(const std::vector<std::string>& amounts) {
        std::vector<Occurrence> occurrences;
        for (const std::string& amount : amounts)
            occurrences.push_back(
                {"A", tenthOfMarch + static_cast<double>(occurrences.size()), true, amount});
        giveFeed(occurrences);
        load();
        return controller->maxSumLength;
    }
};

[[nodiscard]] double boldWidth(const char* text) {
    return QFontMetricsF(platform::boldSystemFont(16)).horizontalAdvance(QLatin1String(text));
}

// --- rows, captions and heights by count and number of transactions

struct Case {
    const char* name;
    Count count;
    int transactions;
    std::int64_t rows; // including the last row
    const char* caption;
    double height;
};

void PrintTo(const Case& listed, std::ostream* stream) {
    *stream << listed.name;
}

class CaptionTest : public RowsTest, public testing::WithParamInterface<Case> {};

TEST_P(CaptionTest, rowsCaptionAndHeight) {
    giveFeedOf(GetParam().transactions);
    load(GetParam().count);
    EXPECT_EQ(controller->numberOfRowsInTableView(table()), GetParam().rows);
    EXPECT_EQ(table().numberOfRows(), GetParam().rows);
    ASSERT_TRUE(addRow());
    EXPECT_EQ(addRow()->titleLabel->stringValue().toStdString(), GetParam().caption);
    EXPECT_EQ(height(), GetParam().height);
}

INSTANTIATE_TEST_SUITE_P(
    Counts, CaptionTest,
    testing::Values(
        Case{"customWithNothing", Count::Custom(3), 0, 1, "TodayViewEmtyText", 50},
        Case{"customWithOne", Count::Custom(3), 1, 2, "", 100},
        Case{"customWithAsManyAsTheLimit", Count::Custom(3), 3, 4, "", 200},
        Case{"customWithOneMore", Count::Custom(3), 4, 4, "ShowAllTitle", 200},
        Case{"customWithTwoMore", Count::Custom(3), 5, 4, "ShowAllTitle", 200},
        Case{"customOneWithNothing", Count::Custom(1), 0, 1, "TodayViewEmtyText", 50},
        Case{"customOneWithOne", Count::Custom(1), 1, 2, "", 100},
        Case{"customOneWithTwo", Count::Custom(1), 2, 2, "ShowAllTitle", 100},
        Case{"customWithTheLargestLimitThatEndsARange", Count::Custom(largest - 1), 2, 3, "", 150},
        Case{"allWithNothing", Count::All(), 0, 1, "TodayViewEmtyText", 50},
        Case{"allWithOne", Count::All(), 1, 2, "", 100}, Case{"allWithThree", Count::All(), 3, 4, "", 200},
        Case{"allWithFour", Count::All(), 4, 5, "", 250}, Case{"allWithTen", Count::All(), 10, 11, "", 550},
        Case{"settingsDefaultWithTen", Count::Custom(5), 10, 6, "ShowAllTitle", 300}),
    [](const auto& listed) { return listed.param.name; });

TEST_F(RowsTest, noneHasOneRowThatSaysNothing) {
    giveFeedOf(4);
    giveSettings(-1, 0);
    load();
    EXPECT_THAT(shown(), ElementsAre("[]"));
    EXPECT_EQ(height(), 50.0);
}

// A view load cannot lead here, because it clears the list.
TEST_F(RowsTest, noneSaysNothingWhateverTheListHolds) {
    giveFeedOf(4);
    load(Count::None());
    EXPECT_THAT(shown(), ElementsAre("[]"));
    EXPECT_EQ(height(), 50.0);
}

TEST_F(RowsTest, theRowAfterTheLimitIsTheLastRowAndNotTheFourthTransaction) {
    giveFeedOf(4);
    load(Count::Custom(3));
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C", "[ShowAllTitle]"));
    EXPECT_TRUE(std::dynamic_pointer_cast<TodayAddTableCellView>(viewOf(3)));
}

// --- limits that are not the end of a range

TEST_F(RowsTest, aLimitOf0IsFatal) {
    giveFeedOf(2);
    load();
    EXPECT_FATAL((controller->trCount = Count::Custom(0), controller->reloadData()));
}

TEST_F(RowsTest, aLimitOf0IsFatalForAnEmptyListToo) {
    load();
    EXPECT_FATAL((controller->trCount = Count::Custom(0), controller->reloadData()));
}

TEST_F(RowsTest, aNegativeLimitIsFatal) {
    giveFeedOf(2);
    load();
    controller->trCount = Count::Custom(-1);
    EXPECT_FATAL((void)viewOf(0));
    controller->trCount = Count::Custom(-7);
    EXPECT_FATAL(controller->reloadData());
}

TEST_F(RowsTest, theLargestIntegerAsLimitIsFatal) {
    giveFeedOf(2);
    load();
    EXPECT_FATAL((controller->trCount = Count::Custom(largest), controller->reloadData()));
}

// --- the views

TEST_F(RowsTest, aTransactionsRowIsThePreparedOneWhateverTheColumn) {
    giveFeedOf(3);
    load();
    row(1).titleLabel->setStringValue(QStringLiteral("mark"));
    EXPECT_EQ(viewOf(1), controller->cellArray[1]);
    EXPECT_EQ(controller->tableViewViewForTableColumnRow(table(), 17, 1), controller->cellArray[1]);
    controller->reloadData();
    EXPECT_EQ(table().viewAtRow(1), controller->cellArray[1]);
    EXPECT_EQ(row(1).titleLabel->stringValue(), QStringLiteral("mark"));
}

TEST_F(RowsTest, theLastRowIsMadeEachTimeItIsAskedFor) {
    giveFeedOf(1);
    load();
    const auto first = std::dynamic_pointer_cast<TodayAddTableCellView>(viewOf(1));
    const auto second = std::dynamic_pointer_cast<TodayAddTableCellView>(viewOf(1));
    ASSERT_TRUE(first && second);
    EXPECT_NE(first, second);
    EXPECT_EQ(second->delegate, std::shared_ptr<TodayAddTableViewCellDelegate>(controller));
}

TEST_F(RowsTest, rowsAreEachOfCellHeight) {
    giveFeedOf(2);
    load();
    row(0).cellClicked();
    for (const std::int64_t number : {std::int64_t(0), std::int64_t(1), std::int64_t(2), largest})
        EXPECT_EQ(controller->tableViewHeightOfRow(table(), number), 50.0) << number;
    EXPECT_EQ(table().viewAtRow(0)->frame(), QRectF(0, 0, 320, 50));
    EXPECT_EQ(table().viewAtRow(2)->frame(), QRectF(0, 100, 320, 50));
}

TEST_F(RowsTest, aRowWithoutAPreparedViewIsFatal) {
    giveFeedOf(2);
    load();
    EXPECT_FATAL((controller->cellArray.pop_back(), controller->reloadData()));
}

TEST_F(RowsTest, aRowNumberBelow0IsFatal) {
    giveFeedOf(2);
    load();
    EXPECT_FATAL((void)viewOf(-1));
}

// --- indexes

TEST_F(RowsTest, calcIndexesCountsFrom0) {
    giveFeedOf(3);
    load();
    for (const auto& each : controller->transactionsArray)
        each->index = -5;
    controller->calcIndexes();
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(transaction(i)->index, static_cast<std::int64_t>(i));
}

TEST_F(RowsTest, calcIndexesOfNothingDoesNothing) {
    load();
    controller->calcIndexes();
    EXPECT_THAT(controller->transactionsArray, SizeIs(0));
}

// --- the width of the amounts

TEST_F(RowsTest, narrowAmountsTake50) {
    ASSERT_LT(boldWidth("$ 1"), 50);
    EXPECT_EQ(widthOf({"$ 1", "", "$ 22"}), 50.0);
}

TEST_F(RowsTest, noAmountsTake50) {
    giveFeedOf(0);
    load();
    controller->maxSumLength = 90;
    controller->loadData();
    EXPECT_EQ(controller->maxSumLength, 50.0);
}

TEST_F(RowsTest, theWidestAmountCountsAndNothingIsAdded) {
    const double wide = boldWidth("$ 12,345");
    ASSERT_GT(wide, 50);
    ASSERT_LT(wide, 105);
    EXPECT_DOUBLE_EQ(widthOf({"$ 1", "$ 12,345", "$ 9"}), wide);
}

TEST_F(RowsTest, amountsTakeAtMost105) {
    ASSERT_GT(boldWidth("$ 123,456,789,000.00"), 130);
    EXPECT_EQ(widthOf({"$ 1", "$ 123,456,789,000.00"}), 105.0);
}

TEST_F(RowsTest, amountsBeyondTheShownCountAreMeasuredToo) {
    EXPECT_EQ(widthOf({"1", "2", "3", "4", "5", "6", "$ 123,456,789,000.00"}), 105.0);
}

TEST_F(RowsTest, namesAreNotMeasured) {
    giveFeed({{"A name that is as long as names ever get in a feed", tenthOfMarch, true, "$ 1"}});
    load();
    EXPECT_EQ(controller->maxSumLength, 50.0);
}

TEST_F(RowsTest, allRowsOfALoadGetTheSameWidth) {
    (void)widthOf({"$ 1", "$ 12,345", "$ 9"});
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_DOUBLE_EQ(row(i).sumWidthLayoutConstraint->constant(), controller->maxSumLength + 2) << i;
}

TEST_F(RowsTest, reloadingDoesNotMeasure) {
    giveFeedOf(2);
    load();
    controller->maxSumLength = 99;
    controller->reloadData();
    EXPECT_EQ(controller->maxSumLength, 99.0);
}

// --- the widget's height

TEST_F(RowsTest, thePreferredWidthStays) {
    giveFeedOf(2);
    load();
    controller->setPreferredContentSize(QSizeF(123.5, 7));
    controller->configureWidgetHeight();
    EXPECT_EQ(controller->preferredContentSize(), QSizeF(123.5, 150));
}

TEST_F(RowsTest, aSheetThatIsTallerThanTheRowsSetsTheHeight) {
    giveFeedOf(2, false);
    load();
    act(0, Action::Delete(false));
    ASSERT_EQ(sheet().contentHeight(), 197.0);
    EXPECT_EQ(height(), 197.0);
}

TEST_F(RowsTest, aSheetOfThreeChoicesOverTwoRowsTakes245) {
    giveFeedOf(2);
    load();
    act(0, Action::Later(0));
    ASSERT_EQ(sheet().contentHeight(), 245.0);
    EXPECT_EQ(height(), 245.0);
}

TEST_F(RowsTest, rowsThatAreTallerThanTheSheetSetTheHeight) {
    giveFeedOf(5, false);
    load(Count::All());
    act(0, Action::Delete(false));
    EXPECT_EQ(height(), 300.0);
}

TEST_F(RowsTest, aSheetBehindAVisibleTableDoesNotCount) {
    giveFeedOf(1);
    load();
    act(0, Action::Later(0));
    table().setHidden(false);
    controller->configureWidgetHeight();
    EXPECT_EQ(height(), 100.0);
}

TEST_F(RowsTest, aHiddenTableWithoutASheetIsFatal) {
    load();
    EXPECT_FATAL((table().setHidden(true), controller->configureWidgetHeight()));
}

} // namespace
} // namespace controller

#include "views/rows/TodayTableCellView.h"

#include "platform/images/BundleImages.h"
#include "platform/views/InterfaceFile.h"
#include "support/Application.h"
#include "support/RegionOverride.h"
#include "views/rows/RowInterfaceFiles.h"
#include "views/rows/RowTest.h"

#include <array>
#include <limits>
#include <string>

namespace rows {
namespace {

using TodayTableCellViewTest = RowTest;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

QImage pixelsOf(const platform::Image& image) {
    return image.pixels(1);
}

QImage glyph(const char* name, const QColor& color) {
    return pixelsOf(platform::imageNamed(QLatin1String(name)).tinted(color));
}

// --- a row from its interface file

TEST_F(TodayTableCellViewTest, theInterfaceFileHoldsOneRow) {
    registerRowInterfaceFiles(); // once more
    const auto views = platform::InterfaceFile::named(QStringLiteral("TodayTableCellView"))->instantiate();
    ASSERT_EQ(views.size(), 1U);
    EXPECT_TRUE(std::dynamic_pointer_cast<TodayTableCellView>(views[0]));
    EXPECT_EQ(views[0]->frame().height(), 50);
}

TEST_F(TodayTableCellViewTest, startsClosedWithoutItemAndDelegate) {
    const auto row = makeRow();
    EXPECT_FALSE(row->isExpanded());
    EXPECT_FALSE(row->item);
    EXPECT_FALSE(row->delegate);
    EXPECT_EQ(row->clickedAlpha, 0.5);
    EXPECT_EQ(row->cellContentViewRightSpaceConstraint->constant(), 0);
    EXPECT_EQ(row->widthConstraint->constant(), row->rightButtonsPanel->frame().width());
}

TEST_F(TodayTableCellViewTest, itsColoursAreFixed) {
    const auto row = makeRow();
    const auto rgba = [](const QColor& color) {
        return std::array{color.red(), color.green(), color.blue(), color.alpha()};
    };
    EXPECT_EQ(rgba(row->overdueColor), (std::array{243, 123, 5, 255}));
    EXPECT_EQ(rgba(row->mainColor), (std::array{255, 255, 255, 255}));
    EXPECT_EQ(rgba(row->sumBackgroundIncomeColor), (std::array{39, 213, 235, 255}));
    EXPECT_EQ(rgba(row->sumBackgroundExpenseColor), (std::array{253, 203, 1, 255}));
    EXPECT_EQ(rgba(row->sumBackgroundDefaultColor), (std::array{255, 255, 255, 255}));
    EXPECT_EQ(rgba(row->sumTextColor), (std::array{34, 62, 75, 255}));
}

TEST_F(TodayTableCellViewTest, theContentHoldsEveryViewButThePanel) {
    const auto row = makeRow();
    const std::array<const platform::View*, 6> held{row->transactionImageView.get(),
                                                    row->titleLabel.get(),
                                                    row->subtitleLabel.get(),
                                                    row->sumBackgroundView.get(),
                                                    row->transactionTypeImageView.get(),
                                                    row->sumLabel.get()};
    for (const platform::View* view : held)
        EXPECT_EQ(view->superview(), row->cellContentView.get());
    EXPECT_EQ(row->sumBackgroundBox->superview(), row->sumBackgroundView.get());
    EXPECT_EQ(row->cellContentView->superview(), row.get());
    EXPECT_EQ(row->rightButtonsPanel->superview(), row.get());
    // The content is in front of the panel.
    EXPECT_EQ(row->subviews().back(), row->cellContentView.get());
}

TEST_F(TodayTableCellViewTest, wakesWithARoundBadge) {
    const auto row = makeRow();
    EXPECT_TRUE(row->sumBackgroundView->masksToBounds());
    EXPECT_EQ(row->sumBackgroundView->cornerRadius(), 4.0);
}

TEST_F(TodayTableCellViewTest, wakesWithFourButtonsThatReportToTheRow) {
    const auto row = makeRow();
    EXPECT_EQ(buttonsOf(*row).size(), 4U);
    EXPECT_EQ(row->rightButtonsPanel->delegate.get(), row.get());
}

TEST_F(TodayTableCellViewTest, thePanelDoesNotOwnTheRow) {
    const auto row = makeRow();
    EXPECT_EQ(row.use_count(), 1);
}

TEST_F(TodayTableCellViewTest, wakesWithATitleThatIsCutAtItsTail) {
    const auto row = makeRow();
    EXPECT_EQ(row->titleLabel->lineBreakMode(), platform::Label::LineBreakMode::TruncatingTail);
}

// --- texts

TEST_F(TodayTableCellViewTest, keepsTheItem) {
    const auto row = makeRow();
    const auto rent = item();
    row->configureForItem(rent, 60);
    EXPECT_EQ(row->item, rent);
}

TEST_F(TodayTableCellViewTest, showsTheName) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    EXPECT_EQ(row->titleLabel->stringValue(), QStringLiteral("Rent"));
    EXPECT_EQ(sizeOf(row->titleLabel->labelFont()), 15);
    EXPECT_FALSE(row->titleLabel->labelFont().bold());
    EXPECT_EQ(row->titleLabel->textColor(), row->mainColor);
}

TEST_F(TodayTableCellViewTest, showsTheDueDate) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    EXPECT_EQ(row->subtitleLabel->stringValue(), QStringLiteral("Mar 10, 2026"));
    EXPECT_EQ(sizeOf(row->subtitleLabel->labelFont()), 12);
    EXPECT_FALSE(row->subtitleLabel->labelFont().bold());
}

TEST_F(TodayTableCellViewTest, theDateFollowsRegionAndTimeZoneOfTheMoment) {
    const auto row = makeRow();
    auto values = rent();
    values.date = support::utc(2026, 3, 10, 1);
    row->configureForItem(item(values), 60);
    EXPECT_EQ(row->subtitleLabel->stringValue(), QStringLiteral("Mar 10, 2026"));
    const support::RegionOverride elsewhere({"de_DE", "America/New_York"});
    row->configureForItem(item(values), 60);
    EXPECT_EQ(row->subtitleLabel->stringValue(), QStringLiteral("09.03.2026"));
}

TEST_F(TodayTableCellViewTest, theDateIsAsWideAsItsText) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    const double narrow = row->subtitleWidthLayoutConstraint->constant();
    EXPECT_EQ(narrow, row->subtitleLabel->bounds().width());
    EXPECT_GE(
        narrow,
        QFontMetricsF(row->subtitleLabel->labelFont()).horizontalAdvance(row->subtitleLabel->stringValue()));

    const support::RegionOverride elsewhere({"pt_PT", "UTC"}); // "10/03/2026"
    row->configureForItem(item(), 60);
    EXPECT_LT(row->subtitleWidthLayoutConstraint->constant(), narrow);
    EXPECT_EQ(row->subtitleWidthLayoutConstraint->constant(), row->subtitleLabel->bounds().width());
}

TEST_F(TodayTableCellViewTest, aDateThatNoCalendarPlacesHasNoText) {
    const auto row = makeRow();
    auto values = rent();
    values.date = nan;
    row->configureForItem(item(values), 60);
    EXPECT_EQ(row->subtitleLabel->stringValue(), QString());
    EXPECT_EQ(row->subtitleWidthLayoutConstraint->constant(), 0);
}

TEST_F(TodayTableCellViewTest, showsTheAmountInDarkSlate) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    EXPECT_EQ(row->sumLabel->stringValue(), QStringLiteral("12.50"));
    EXPECT_EQ(row->sumLabel->textColor(), row->sumTextColor);
}

TEST_F(TodayTableCellViewTest, bringsBackTheTextsThatAnOpenRowHides) {
    const auto row = makeRow();
    row->titleLabel->setHidden(true);
    row->subtitleLabel->setHidden(true);
    row->configureForItem(item(), 60);
    EXPECT_FALSE(row->titleLabel->isHidden());
    EXPECT_FALSE(row->subtitleLabel->isHidden());
}

TEST_F(TodayTableCellViewTest, leavesStateOffsetGlyphAndBadgeToTheExpansion) {
    const auto row = makeOpenRow();
    row->transactionTypeImageView->setHidden(true);
    row->configureForItem(item(), 60);
    EXPECT_TRUE(row->isExpanded());
    EXPECT_EQ(row->cellContentViewRightSpaceConstraint->constant(), -row->widthConstraint->constant());
    EXPECT_TRUE(row->transactionTypeImageView->isHidden());
    EXPECT_TRUE(row->sumBackgroundView->isHidden());
    EXPECT_TRUE(row->sumLabel->isHidden());
}

// --- the picture

TEST_F(TodayTableCellViewTest, showsAGlyphInWhiteAtItsOwnSize) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    EXPECT_EQ(row->transactionImageView->image().size(), QSizeF(24, 24));
    EXPECT_EQ(pixelsOf(row->transactionImageView->image()).pixelColor(12, 12), QColor(Qt::white));
}

TEST_F(TodayTableCellViewTest, showsAPictureCutToTheOvalOfItsView) {
    const auto row = makeRow();
    auto values = rent();
    values.imageName = pictureName;
    row->configureForItem(item(values), 60);
    const QImage picture = pixelsOf(row->transactionImageView->image());
    EXPECT_EQ(row->transactionImageView->image().size(), row->transactionImageView->frame().size());
    EXPECT_EQ(picture.pixelColor(picture.rect().center()), QColor(Qt::darkGreen));
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
}

TEST_F(TodayTableCellViewTest, aPictureThatIsMissingLeavesTheRestShown) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    auto values = rent();
    values.name = QStringLiteral("Gym");
    values.imageName = QStringLiteral("00000000-0000-0000-0000"); // long enough for a picture's
    row->configureForItem(item(values), 60);
    EXPECT_TRUE(row->transactionImageView->image().isNull());
    EXPECT_EQ(row->titleLabel->stringValue(), QStringLiteral("Gym"));
    EXPECT_EQ(row->sumLabel->stringValue(), QStringLiteral("12.50"));
    EXPECT_FALSE(row->transactionTypeImageView->image().isNull());
}

TEST_F(TodayTableCellViewTest, aPictureThatWasDimmedIsOpaqueAgain) {
    const auto row = makeRow();
    row->transactionImageView->setAlphaValue(0.25);
    row->configureForItem(item(), 60);
    EXPECT_EQ(row->transactionImageView->alphaValue(), 1.0);
}

// --- the badge

struct Badge : Named {
    bool isIncome, isExpense;
    QColor color;
};

class BadgeTest : public RowTest, public testing::WithParamInterface<Badge> {};

TEST_P(BadgeTest, tellsIncomeAndExpense) {
    const auto row = makeRow();
    auto values = rent();
    values.isIncome = GetParam().isIncome;
    values.isExpense = GetParam().isExpense;
    row->configureForItem(item(values), 60);
    EXPECT_EQ(row->sumBackgroundBox->fillColor(), GetParam().color);
}

INSTANTIATE_TEST_SUITE_P(Badges, BadgeTest,
                         testing::Values(Badge{{"income"}, true, false, QColor(39, 213, 235)},
                                         Badge{{"expense"}, false, true, QColor(253, 203, 1)},
                                         Badge{{"both"}, true, true, QColor(255, 255, 255)},
                                         Badge{{"neither"}, false, false, QColor(255, 255, 255)}),
                         nameOfCase<Badge>);

// --- the due state

TEST_F(TodayTableCellViewTest, anOverdueItemHasAnOrangeGlyphAndDateAndAWhiteTitle) {
    const auto row = makeRow();
    row->configureForItem(overdueItem(), 60);
    EXPECT_EQ(row->subtitleLabel->textColor(), QColor(243, 123, 5));
    EXPECT_EQ(row->titleLabel->textColor(), QColor(Qt::white));
    EXPECT_EQ(pixelsOf(row->transactionTypeImageView->image()),
              glyph("transactionOverdue", QColor(243, 123, 5)));
}

TEST_F(TodayTableCellViewTest, aPlannedItemHasAWhiteGlyphAndDate) {
    const auto row = makeRow();
    row->configureForItem(item(), 60); // due at this very moment, which is not overdue yet
    EXPECT_EQ(row->subtitleLabel->textColor(), QColor(Qt::white));
    EXPECT_EQ(pixelsOf(row->transactionTypeImageView->image()), glyph("transactionPlanned", Qt::white));
}

TEST_F(TodayTableCellViewTest, theTwoGlyphsDiffer) {
    EXPECT_NE(glyph("transactionPlanned", Qt::white), glyph("transactionOverdue", Qt::white));
}

TEST_F(TodayTableCellViewTest, aRowOfAnOverdueItemShowsAPlannedOneAsPlanned) {
    const auto row = makeRow();
    row->configureForItem(overdueItem(), 60);
    row->configureForItem(item(), 60);
    EXPECT_EQ(row->subtitleLabel->textColor(), QColor(Qt::white));
    EXPECT_EQ(pixelsOf(row->transactionTypeImageView->image()), glyph("transactionPlanned", Qt::white));
}

TEST_F(TodayTableCellViewTest, theDueStateIsThatOfTheMoment) {
    const auto row = makeRow();
    const auto rent = item();
    row->configureForItem(rent, 60);
    clock.advance(1);
    row->configureForItem(rent, 60);
    EXPECT_EQ(row->subtitleLabel->textColor(), row->overdueColor);
}

TEST_F(TodayTableCellViewTest, tintingLeavesTheGlyphOfTheBundleAsItIs) {
    const QImage before = pixelsOf(platform::imageNamed(QStringLiteral("transactionOverdue")));
    const auto row = makeRow();
    row->configureForItem(overdueItem(), 60);
    EXPECT_EQ(pixelsOf(platform::imageNamed(QStringLiteral("transactionOverdue"))), before);
}

// --- reuse

TEST_F(TodayTableCellViewTest, aReusedRowLooksAsANewOne) {
    auto last = rent();
    last.name = QStringLiteral("A long name that reaches the badge and beyond it");
    last.date = now - 1;
    last.imageName = pictureName;
    last.amount = QStringLiteral("1,234,567,890.00 in all");
    last.isIncome = true;
    last.isExpense = false;
    auto next = rent();
    next.imageName = QStringLiteral("00000000-0000-0000-0000"); // no picture of that name

    for (const double maxSum : {60.0, 140.0}) {
        const auto fresh = makeRow(), reused = makeRow();
        reused->configureForItem(item(last), 140);
        reused->configureForItem(item(next), maxSum);
        fresh->configureForItem(item(next), maxSum);
        EXPECT_EQ(support::painted(*reused), support::painted(*fresh)) << maxSum;
        EXPECT_FALSE(support::inkOf(support::painted(*fresh)).isNull());
        EXPECT_EQ(reused->sumWidthLayoutConstraint->constant(), fresh->sumWidthLayoutConstraint->constant());
        EXPECT_EQ(reused->subtitleWidthLayoutConstraint->constant(),
                  fresh->subtitleWidthLayoutConstraint->constant());
        EXPECT_EQ(reused->accessibleTraits().name, fresh->accessibleTraits().name);
        EXPECT_EQ(reused->accessibleTraits().description, fresh->accessibleTraits().description);
    }
}

} // namespace
} // namespace rows

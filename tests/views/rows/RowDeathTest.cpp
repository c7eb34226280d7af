#include "platform/storage/GroupContainers.h"
#include "support/BundleImageHidden.h"
#include "views/rows/RowTest.h"

#include <csignal>
#include <string>

namespace rows {
namespace {

// A fatal fault ends the process at once by SIGABRT and prints nothing.
#define EXPECT_FATAL(statement) EXPECT_EXIT(statement, testing::KilledBySignal(SIGABRT), "^$")

struct MissingOutlet : Named {
    void (*disconnect)(TodayTableCellView& row);
};

class MissingOutletDeathTest : public RowTest, public testing::WithParamInterface<MissingOutlet> {
protected:
    void disconnect(TodayTableCellView& row) const { GetParam().disconnect(row); }
};

TEST_P(MissingOutletDeathTest, isFatalToARowThatWakes) {
    const auto row = makeRow();
    disconnect(*row);
    EXPECT_FATAL(row->awakeFromNib());
}

TEST_P(MissingOutletDeathTest, isFatalToARowThatIsConfigured) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    disconnect(*row);
    EXPECT_FATAL(row->configureForItem(item(), 90));
}

template <auto outlet>
MissingOutlet missing(const char* name) {
    return {{name}, [](TodayTableCellView& row) { row.*outlet = nullptr; }};
}

INSTANTIATE_TEST_SUITE_P(
    Outlets, MissingOutletDeathTest,
    testing::Values(
        missing<&TodayTableCellView::cellContentView>("cellContentView"),
        missing<&TodayTableCellView::transactionImageView>("transactionImageView"),
        missing<&TodayTableCellView::titleLabel>("titleLabel"),
        missing<&TodayTableCellView::subtitleLabel>("subtitleLabel"),
        missing<&TodayTableCellView::sumBackgroundView>("sumBackgroundView"),
        missing<&TodayTableCellView::sumBackgroundBox>("sumBackgroundBox"),
        missing<&TodayTableCellView::transactionTypeImageView>("transactionTypeImageView"),
        missing<&TodayTableCellView::sumLabel>("sumLabel"),
        missing<&TodayTableCellView::titleRightSpaceLayoutConstraint>("titleRightSpaceLayoutConstraint"),
        missing<&TodayTableCellView::widthConstraint>("widthConstraint"),
        missing<&TodayTableCellView::cellContentViewRightSpaceConstraint>(
            "cellContentViewRightSpaceConstraint"),
        missing<&TodayTableCellView::subtitleWidthLayoutConstraint>("subtitleWidthLayoutConstraint"),
        missing<&TodayTableCellView::sumWidthLayoutConstraint>("sumWidthLayoutConstraint"),
        missing<&TodayTableCellView::sumBackgroundWidthLayoutConstraint>(
            "sumBackgroundWidthLayoutConstraint"),
        missing<&TodayTableCellView::rightButtonsPanel>("rightButtonsPanel")),
    nameOfCase<MissingOutlet>);

class MissingSlidingOutletDeathTest : public MissingOutletDeathTest {};

TEST_P(MissingSlidingOutletDeathTest, isFatalToARowThatIsClicked) {
    const auto row = makeRow();
    disconnect(*row);
    EXPECT_FATAL({
        row->mouseDown({});
        row->mouseUp({});
    });
}

TEST_P(MissingSlidingOutletDeathTest, isFatalToARowThatCloses) {
    const auto row = makeOpenRow();
    disconnect(*row);
    EXPECT_FATAL({
        row->collapseCell();
        finishSlide();
    });
}

INSTANTIATE_TEST_SUITE_P(
    Outlets, MissingSlidingOutletDeathTest,
    testing::Values(missing<&TodayTableCellView::cellContentView>("cellContentView"),
                    missing<&TodayTableCellView::titleLabel>("titleLabel"),
                    missing<&TodayTableCellView::subtitleLabel>("subtitleLabel"),
                    missing<&TodayTableCellView::transactionTypeImageView>("transactionTypeImageView"),
                    missing<&TodayTableCellView::sumBackgroundView>("sumBackgroundView"),
                    missing<&TodayTableCellView::sumLabel>("sumLabel"),
                    missing<&TodayTableCellView::widthConstraint>("widthConstraint"),
                    missing<&TodayTableCellView::cellContentViewRightSpaceConstraint>(
                        "cellContentViewRightSpaceConstraint")),
    nameOfCase<MissingOutlet>);

class RowDeathTest : public RowTest {};

TEST_F(RowDeathTest, aPlannedGlyphThatTheBundleLacksIsFatal) {
    const auto row = makeRow();
    const support::BundleImageHidden hidden(QStringLiteral("transactionPlanned"));
    EXPECT_FATAL(row->configureForItem(item(), 60));
    row->configureForItem(overdueItem(), 60); // does not need it
    EXPECT_FALSE(row->transactionTypeImageView->image().isNull());
}

TEST_F(RowDeathTest, anOverdueGlyphThatTheBundleLacksIsFatal) {
    const auto row = makeRow();
    const support::BundleImageHidden hidden(QStringLiteral("transactionOverdue"));
    EXPECT_FATAL(row->configureForItem(overdueItem(), 60));
    row->configureForItem(item(), 60); // does not need it
    EXPECT_FALSE(row->transactionTypeImageView->image().isNull());
}

TEST_F(RowDeathTest, anIconOfAGlyphsNameThatIsMissingIsFatal) {
    const auto row = makeRow();
    auto values = rent();
    values.imageName = QStringLiteral("nothing of that name");
    EXPECT_FATAL(row->configureForItem(item(values), 60));
}

TEST_F(RowDeathTest, aMissingContainerIsFatal) {
    const auto row = makeRow();
    auto values = rent();
    values.imageName = pictureName;
    platform::GroupContainers::setFolder(containers.folder().path("nowhere"));
    EXPECT_FATAL(row->configureForItem(item(values), 60));
}

TEST_F(RowDeathTest, aButtonsImageThatTheBundleLacksIsNotFatal) {
    const support::BundleImageHidden hidden(QStringLiteral("paid"));
    const auto row = makeOpenRow();
    EXPECT_EQ(buttonsOf(*row).size(), 4U);
    EXPECT_TRUE(row->isExpanded());
}

// --- the add row

struct MissingAddOutlet : Named {
    void (*disconnect)(TodayAddTableCellView& row);
};

class MissingAddOutletDeathTest : public RowTest, public testing::WithParamInterface<MissingAddOutlet> {};

TEST_P(MissingAddOutletDeathTest, isFatalToARowThatWakes) {
    const auto row = makeAddRow();
    GetParam().disconnect(*row);
    EXPECT_FATAL(row->awakeFromNib());
}

INSTANTIATE_TEST_SUITE_P(
    Outlets, MissingAddOutletDeathTest,
    testing::Values(
        MissingAddOutlet{{"addButton"}, [](TodayAddTableCellView& row) { row.addButton = nullptr; }},
        MissingAddOutlet{{"titleLabel"}, [](TodayAddTableCellView& row) { row.titleLabel = nullptr; }},
        MissingAddOutlet{{"clickView"}, [](TodayAddTableCellView& row) { row.clickView = nullptr; }}),
    nameOfCase<MissingAddOutlet>);

class AddRowDeathTest : public RowTest {};

TEST_F(AddRowDeathTest, aMissingCaptionIsFatalToAPress) {
    const auto row = makeAddRow();
    row->titleLabel = nullptr;
    EXPECT_FATAL(row->mouseDown({}));
    EXPECT_FATAL(row->mouseUp({}));
}

TEST_F(AddRowDeathTest, aMissingClickViewIsFatalToAHit) {
    const auto row = makeAddRow();
    row->clickView = nullptr;
    EXPECT_FATAL((void)row->hitTest(QPointF(180, 60)));
}

} // namespace
} // namespace rows

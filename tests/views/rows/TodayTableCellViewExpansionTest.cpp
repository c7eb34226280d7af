#include "views/rows/RowTest.h"

#include <chrono>
#include <string>
#include <vector>

namespace rows {
namespace {

class ExpansionTest : public RowTest {
protected:
    ExpansionTest() {
        row->configureForItem(item(), 60);
        row->delegate = delegate;
    }

    [[nodiscard]] double offset() const { return row->cellContentViewRightSpaceConstraint->constant(); }
    [[nodiscard]] bool showsBadge() const {
        EXPECT_EQ(row->sumBackgroundView->isHidden(), row->sumLabel->isHidden());
        return !row->sumBackgroundView->isHidden();
    }
    [[nodiscard]] bool showsTexts() const {
        EXPECT_EQ(row->titleLabel->isHidden(), row->subtitleLabel->isHidden());
        return !row->titleLabel->isHidden();
    }
    void expectAllShown() const {
        EXPECT_FALSE(row->titleLabel->isHidden());
        EXPECT_FALSE(row->subtitleLabel->isHidden());
        EXPECT_FALSE(row->transactionTypeImageView->isHidden());
        EXPECT_FALSE(row->sumBackgroundView->isHidden());
        EXPECT_FALSE(row->sumLabel->isHidden());
    }
    void open() {
        row->cellClicked();
        finishSlide();
    }

    std::shared_ptr<TodayTableCellView> row = makeRow();
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    const double slide = row->widthConstraint->constant();
};

// --- the states of a row and when they change

TEST_F(ExpansionTest, closedItShowsEverythingWithoutAnOffset) {
    EXPECT_FALSE(row->isExpanded());
    EXPECT_EQ(offset(), 0);
    expectAllShown();
}

TEST_F(ExpansionTest, openingItHidesAtOnceWhatTheButtonsWouldCover) {
    row->cellClicked();
    EXPECT_TRUE(row->isExpanded());
    EXPECT_EQ(offset(), 0);
    EXPECT_FALSE(showsBadge());
    EXPECT_FALSE(showsTexts());
    EXPECT_FALSE(row->transactionTypeImageView->isHidden()); // it is left of the buttons
    queue.advance(100ms);
    EXPECT_DOUBLE_EQ(offset(), -slide / 2);
    EXPECT_FALSE(showsBadge());
}

TEST_F(ExpansionTest, openItIsAsFarAsTheButtonsAreWide) {
    row->cellClicked();
    queue.advance(199ms);
    EXPECT_GT(offset(), -slide);
    queue.advance(1ms);
    EXPECT_EQ(offset(), -slide);
    EXPECT_FALSE(showsBadge());
    EXPECT_FALSE(showsTexts());
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(ExpansionTest, withReducedMotionItShowsAndCoversItsButtonsAtOnce) {
    queue.setReducedMotion(true);
    row->cellClicked();
    queue.advance(0ms);
    EXPECT_EQ(offset(), -slide);
    row->cellClicked();
    queue.advance(0ms);
    EXPECT_EQ(offset(), 0);
    queue.advance(199ms);
    EXPECT_FALSE(showsBadge());
    queue.advance(1ms);
    expectAllShown();
}

TEST_F(ExpansionTest, closingItShowsThePartsOnlyAtTheEndOfTheSlide) {
    open();
    row->cellClicked();
    EXPECT_FALSE(row->isExpanded());
    EXPECT_EQ(offset(), -slide);
    queue.advance(100ms);
    EXPECT_DOUBLE_EQ(offset(), -slide / 2);
    queue.advance(99ms);
    EXPECT_LT(offset(), 0);
    EXPECT_FALSE(showsBadge());
    EXPECT_FALSE(showsTexts());
    queue.advance(1ms);
    EXPECT_EQ(offset(), 0);
    expectAllShown();
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(ExpansionTest, slidesByTheWidthThatTheConstraintHasNow) {
    row->widthConstraint->setConstant(120);
    open();
    EXPECT_EQ(offset(), -120);
    EXPECT_EQ(row->cellContentView->frame().width(), 200);
}

TEST_F(ExpansionTest, aRowThatIsReusedKeepsItsState) {
    open();
    row->configureForItem(overdueItem(), 60);
    EXPECT_TRUE(row->isExpanded());
    EXPECT_EQ(offset(), -slide);
}

TEST_F(ExpansionTest, thePictureIsNeverHidden) {
    row->setFrame(QRectF(20, 40, 200, 50)); // 5 points stay in sight
    open();
    EXPECT_FALSE(row->transactionImageView->isHidden());
    EXPECT_TRUE(row->transactionTypeImageView->isHidden());
}

// --- what stays visible: views that end before the limit of 180 points

struct Limit : Named {
    double end; // of the view's frame
    bool isHidden;
};

class LimitTest : public ExpansionTest, public testing::WithParamInterface<Limit> {
protected:
    LimitTest() {
        row->setFrame(QRectF(20, 40, 300, 50));
        row->widthConstraint->setConstant(120);
    }
};

TEST_P(LimitTest, forTheTitle) {
    row->titleRightSpaceLayoutConstraint->setConstant(300 - GetParam().end);
    ASSERT_EQ(row->titleLabel->frame().right(), GetParam().end);
    row->cellClicked();
    EXPECT_EQ(row->titleLabel->isHidden(), GetParam().isHidden);
}

TEST_P(LimitTest, forTheDate) {
    row->subtitleWidthLayoutConstraint->setConstant(GetParam().end - row->subtitleLabel->frame().x());
    ASSERT_EQ(row->subtitleLabel->frame().right(), GetParam().end);
    row->cellClicked();
    EXPECT_EQ(row->subtitleLabel->isHidden(), GetParam().isHidden);
}

TEST_P(LimitTest, forTheGlyph) {
    const QRectF glyph = row->transactionTypeImageView->frame();
    row->transactionTypeImageView->setLogicalFrame(
        QRectF(glyph.x(), glyph.y(), GetParam().end - glyph.x(), glyph.height()));
    ASSERT_EQ(row->transactionTypeImageView->frame().right(), GetParam().end);
    row->cellClicked();
    EXPECT_EQ(row->transactionTypeImageView->isHidden(), GetParam().isHidden);
}

INSTANTIATE_TEST_SUITE_P(Ends, LimitTest,
                         testing::Values(Limit{{"before"}, 179.5, false}, Limit{{"at"}, 180, true},
                                         Limit{{"beyond"}, 180.5, true}),
                         nameOfCase<Limit>);

TEST_F(ExpansionTest, theBadgeIsHiddenAlsoWhereItWouldStayInSight) {
    row->setFrame(QRectF(20, 40, 600, 50));
    row->sumBackgroundView->setLogicalFrame(QRectF(60, 12, 74, 26));
    row->cellClicked();
    EXPECT_FALSE(showsBadge());
}

// --- reversing a slide

TEST_F(ExpansionTest, openedAgainWhileItClosesItStaysOpen) {
    open();
    row->cellClicked();
    queue.advance(100ms);
    row->cellClicked();
    EXPECT_TRUE(row->isExpanded());
    queue.advance(100ms); // the closing group ends
    EXPECT_FALSE(showsBadge());
    EXPECT_FALSE(showsTexts());
    EXPECT_LT(offset(), -slide / 2);
    finishSlide();
    EXPECT_EQ(offset(), -slide);
    EXPECT_FALSE(showsBadge());
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(ExpansionTest, openedAgainWhileItClosesItShowsWhatAnOpenRowShows) {
    const auto hidden = [this] {
        return std::vector<bool>{row->titleLabel->isHidden(), row->subtitleLabel->isHidden(),
                                 row->transactionTypeImageView->isHidden(), !showsBadge()};
    };
    const auto frames = [this] {
        return std::vector<QRectF>{row->transactionImageView->frame(), row->titleLabel->frame(),
                                   row->subtitleLabel->frame(), row->transactionTypeImageView->frame()};
    };
    auto values = rent();
    values.name = QStringLiteral("R");
    row->configureForItem(item(values), 60);
    row->titleRightSpaceLayoutConstraint->setConstant(320 - 100); // the texts stay in sight
    open();
    const std::vector<bool> open = hidden();
    const std::vector<QRectF> places = frames();
    ASSERT_EQ(open, (std::vector<bool>{false, false, false, true}));
    for (int elapsed = 0; elapsed < 200; elapsed += 10) {
        row->cellClicked();
        queue.advance(std::chrono::milliseconds(elapsed));
        row->cellClicked();
        EXPECT_EQ(hidden(), open) << elapsed;
        EXPECT_EQ(frames(), places) << elapsed;
        finishSlide();
        EXPECT_EQ(hidden(), open) << elapsed;
    }
}

TEST_F(ExpansionTest, openClosedAndOpenWithinOneSlideItEndsOpen) {
    row->cellClicked();
    queue.advance(50ms);
    row->cellClicked();
    queue.advance(50ms);
    row->cellClicked();
    queue.advance(150ms); // the closing group ends
    EXPECT_FALSE(showsBadge());
    finishSlide();
    EXPECT_TRUE(row->isExpanded());
    EXPECT_EQ(offset(), -slide);
    EXPECT_FALSE(showsBadge());
}

TEST_F(ExpansionTest, closedWhileItOpensItEndsClosed) {
    row->cellClicked();
    queue.advance(100ms);
    const double turned = offset();
    row->cellClicked();
    EXPECT_EQ(offset(), turned); // the slide is reversed from where it is
    queue.advance(100ms);        // the opening group ends
    EXPECT_DOUBLE_EQ(offset(), turned / 2);
    EXPECT_FALSE(showsBadge());
    queue.advance(100ms);
    EXPECT_EQ(offset(), 0);
    expectAllShown();
}

// --- calls of the delegate

TEST_F(ExpansionTest, theDelegateHearsOfTheRowThatOpens) {
    bool wasExpanded = false, showedBadge = true;
    delegate->during = [&] {
        wasExpanded = row->isExpanded();
        showedBadge = showsBadge();
    };
    row->cellClicked();
    ASSERT_EQ(delegate->opened.size(), 1U);
    EXPECT_EQ(delegate->opened[0], row.get());
    EXPECT_TRUE(wasExpanded);
    EXPECT_FALSE(showedBadge);
    finishSlide();
    EXPECT_EQ(delegate->opened.size(), 1U);
}

TEST_F(ExpansionTest, theDelegateHearsNothingOfARowThatCloses) {
    open();
    row->cellClicked();
    finishSlide();
    EXPECT_EQ(delegate->opened.size(), 1U);
    EXPECT_TRUE(delegate->actions.empty());
}

TEST_F(ExpansionTest, aRowWithoutADelegateOpensAndCloses) {
    row->delegate = nullptr;
    open();
    EXPECT_EQ(offset(), -slide);
    row->cellClicked();
    finishSlide();
    EXPECT_EQ(offset(), 0);
}

TEST_F(ExpansionTest, aDelegateMayCollapseTheRowThatOpens) {
    delegate->during = [this] { row->collapseCell(); };
    row->cellClicked();
    EXPECT_FALSE(row->isExpanded());
    finishSlide();
    EXPECT_EQ(offset(), 0);
    expectAllShown();
}

// --- collapseCell

TEST_F(ExpansionTest, collapsesAnOpenRowWithoutTellingTheDelegate) {
    open();
    row->collapseCell();
    EXPECT_FALSE(row->isExpanded());
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advance(199ms);
    EXPECT_FALSE(showsBadge());
    queue.advance(1ms);
    EXPECT_EQ(offset(), 0);
    expectAllShown();
    EXPECT_EQ(delegate->opened.size(), 1U);
    EXPECT_TRUE(delegate->actions.empty());
}

TEST_F(ExpansionTest, collapsingAClosedRowChangesNothing) {
    row->titleLabel->setHidden(true); // what a completion would show
    row->collapseCell();
    EXPECT_FALSE(row->isExpanded());
    EXPECT_TRUE(queue.isIdle());
    finishSlide();
    EXPECT_TRUE(row->titleLabel->isHidden());
    EXPECT_EQ(offset(), 0);
    EXPECT_TRUE(delegate->opened.empty());
}

TEST_F(ExpansionTest, collapsingAClosingRowDoesNotProlongIt) {
    open();
    row->collapseCell();
    queue.advance(100ms);
    row->collapseCell();
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advance(100ms);
    EXPECT_EQ(offset(), 0);
    expectAllShown();
}

// --- the panel's actions

struct Action : Named {
    TodayTransactionAction action;
};

class ActionTest : public ExpansionTest, public testing::WithParamInterface<Action> {};

TEST_P(ActionTest, isHandedOnUnchanged) {
    open();
    row->buttonsPanelUserClickAction(GetParam().action);
    ASSERT_EQ(delegate->actions.size(), 1U);
    EXPECT_EQ(delegate->actions[0], GetParam().action);
    EXPECT_EQ(delegate->opened.size(), 1U);
}

TEST_P(ActionTest, isHandedOnByAClosedRowToo) {
    row->buttonsPanelUserClickAction(GetParam().action);
    ASSERT_EQ(delegate->actions.size(), 1U);
    EXPECT_EQ(delegate->actions[0], GetParam().action);
}

TEST_P(ActionTest, isHandedOnBeforeTheRowChanges) {
    open();
    bool wasExpanded = false;
    std::size_t pending = 1;
    delegate->during = [&] {
        wasExpanded = row->isExpanded();
        pending = queue.pendingCount();
    };
    row->buttonsPanelUserClickAction(GetParam().action);
    EXPECT_TRUE(wasExpanded);
    EXPECT_EQ(pending, 0U);
}

const Action paid{{"Paid"}, TodayTransactionAction::Paid()}, info{{"Info"}, TodayTransactionAction::Info()},
    laterToday{{"Later0"}, TodayTransactionAction::Later(0)},
    laterInDays{{"Later3"}, TodayTransactionAction::Later(3)},
    laterBefore{{"LaterNegative"}, TodayTransactionAction::Later(-1)},
    deleteOne{{"Delete"}, TodayTransactionAction::Delete(false)},
    deleteAll{{"DeleteLaterOnes"}, TodayTransactionAction::Delete(true)};

INSTANTIATE_TEST_SUITE_P(Any, ActionTest,
                         testing::Values(paid, info, laterToday, laterInDays, laterBefore, deleteOne,
                                         deleteAll),
                         nameOfCase<Action>);

class StayingActionTest : public ActionTest {};

TEST_P(StayingActionTest, leavesTheRowOpen) {
    open();
    row->buttonsPanelUserClickAction(GetParam().action);
    EXPECT_TRUE(row->isExpanded());
    EXPECT_TRUE(queue.isIdle());
    finishSlide();
    EXPECT_EQ(offset(), -slide);
    EXPECT_FALSE(showsBadge());
}

INSTANTIATE_TEST_SUITE_P(PaidAndInfo, StayingActionTest, testing::Values(paid, info), nameOfCase<Action>);

class ClosingActionTest : public ActionTest {};

TEST_P(ClosingActionTest, closesTheRow) {
    open();
    row->buttonsPanelUserClickAction(GetParam().action);
    EXPECT_FALSE(row->isExpanded());
    queue.advance(199ms);
    EXPECT_FALSE(showsBadge());
    queue.advance(1ms);
    EXPECT_EQ(offset(), 0);
    expectAllShown();
}

TEST_P(ClosingActionTest, runsItsGroupOnAClosedRowToo) {
    row->titleLabel->setHidden(true);
    row->buttonsPanelUserClickAction(GetParam().action);
    EXPECT_FALSE(row->isExpanded());
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advance(199ms);
    EXPECT_TRUE(row->titleLabel->isHidden());
    queue.advance(1ms);
    EXPECT_EQ(offset(), 0);
    expectAllShown();
}

TEST_P(ClosingActionTest, closesARowWithoutADelegate) {
    row->delegate = nullptr;
    open();
    row->buttonsPanelUserClickAction(GetParam().action);
    finishSlide();
    EXPECT_EQ(offset(), 0);
    expectAllShown();
}

TEST_P(ClosingActionTest, closesARowThatTheDelegateHasCollapsed) {
    open();
    delegate->during = [this] { row->collapseCell(); };
    row->buttonsPanelUserClickAction(GetParam().action);
    EXPECT_EQ(queue.pendingCount(), 2U); // a group of its own
    finishSlide();
    expectAllShown();
}

INSTANTIATE_TEST_SUITE_P(LaterAndDelete, ClosingActionTest,
                         testing::Values(laterToday, laterInDays, deleteOne, deleteAll), nameOfCase<Action>);

} // namespace
} // namespace rows

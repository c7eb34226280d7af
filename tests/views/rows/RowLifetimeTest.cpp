#include "support/Application.h"
#include "support/Events.h"
#include "views/rows/RowTest.h"

#include <QPointer>

namespace rows {
namespace {

// A row whose last reference the test drops in a call of the delegate or during a slide.
class RowLifetimeTest : public RowTest {
protected:
    RowLifetimeTest() {
        row->configureForItem(item(), 60);
        row->delegate = delegate;
        delegate->during = [this] { row.reset(); };
    }

    void expectGone() const {
        support::flushDeferredDeletes();
        EXPECT_TRUE(object.isNull());
    }

    std::shared_ptr<TodayTableCellView> row = makeRow();
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    const std::weak_ptr<TodayTableCellView> weak = row;
    const QPointer<TodayTableCellView> object = row.get();
};

TEST_F(RowLifetimeTest, aClosingRowLivesUntilItsSlideEnds) {
    delegate->during = nullptr;
    row->cellClicked();
    finishSlide();
    row->cellClicked();
    row.reset();
    queue.advance(199ms);
    ASSERT_FALSE(weak.expired());
    EXPECT_TRUE(weak.lock()->sumLabel->isHidden());
    queue.advance(1ms);
    EXPECT_TRUE(weak.expired());
    expectGone();
}

TEST_F(RowLifetimeTest, aCollapsingRowLivesUntilItsSlideEnds) {
    delegate->during = nullptr;
    row->cellClicked();
    finishSlide();
    row->collapseCell();
    row.reset();
    queue.advance(199ms);
    EXPECT_FALSE(weak.expired());
    queue.advance(1ms);
    expectGone();
}

TEST_F(RowLifetimeTest, anOpeningRowIsHeldByNobody) {
    delegate->during = nullptr;
    row->cellClicked();
    queue.advance(50ms);
    row.reset();
    EXPECT_TRUE(weak.expired());
    expectGone();
    finishSlide(); // its slide finds nothing to move
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(RowLifetimeTest, aDelegateMayEndTheRowThatOpens) {
    row->cellClicked();
    EXPECT_EQ(delegate->opened.size(), 1U);
    EXPECT_TRUE(weak.expired());
    finishSlide();
    expectGone();
}

TEST_F(RowLifetimeTest, aDelegateMayEndTheRowOfAPaidTransaction) {
    row->buttonsPanelUserClickAction(TodayTransactionAction::Paid());
    EXPECT_TRUE(weak.expired());
    expectGone();
}

TEST_F(RowLifetimeTest, aDelegateMayEndTheRowOfADeletedTransaction) {
    row->buttonsPanelUserClickAction(TodayTransactionAction::Delete(false));
    EXPECT_FALSE(row);
    EXPECT_FALSE(weak.expired()); // its slide still runs
    finishSlide();
    EXPECT_TRUE(weak.expired());
    expectGone();
}

TEST_F(RowLifetimeTest, aDelegateMayEndTheRowFromARealClickOnIt) {
    showStage();
    TodayTableCellView& clicked = *row;
    support::click(clicked);
    EXPECT_FALSE(row);
    finishSlide();
    expectGone();
}

TEST_F(RowLifetimeTest, aDelegateMayEndTheRowFromARealClickOnAButton) {
    for (const std::size_t button : {0U, 1U, 2U, 3U}) {
        auto clicked = makeOpenRow();
        showStage();
        const QPointer<TodayTableCellView> alive = clicked.get();
        clicked->delegate = delegate;
        delegate->during = [&] { clicked.reset(); };
        support::click(*buttonsOf(*alive)[button]);
        EXPECT_FALSE(clicked);
        finishSlide();
        support::flushDeferredDeletes();
        EXPECT_TRUE(alive.isNull()) << button;
    }
    EXPECT_EQ(delegate->actions.size(), 4U);
}

TEST_F(RowLifetimeTest, aDelegateMayTakeItselfAway) {
    delegate->during = [this] { row->delegate = nullptr; };
    const std::weak_ptr<RecordingDelegate> last = std::exchange(delegate, nullptr);
    row->cellClicked();
    EXPECT_TRUE(last.expired());
    EXPECT_TRUE(row->isExpanded());
}

TEST_F(RowLifetimeTest, theRowHoldsItsDelegate) {
    const std::weak_ptr<RecordingDelegate> held = delegate;
    delegate.reset();
    EXPECT_FALSE(held.expired());
    row->delegate = nullptr;
    EXPECT_TRUE(held.expired());
}

TEST_F(RowLifetimeTest, aDelegateMayEndTheAddRowFromARealClick) {
    struct Ending final : TodayAddTableViewCellDelegate {
        void todayAddTableViewCellClickAddButton() override { ended->reset(); }
        void todayAddTableViewCellClickContentCell() override { ended->reset(); }
        std::shared_ptr<TodayAddTableCellView>* ended = nullptr;
    };
    for (const bool onButton : {true, false}) {
        auto addRow = makeAddRow();
        showStage();
        const auto ending = std::make_shared<Ending>();
        ending->ended = &addRow;
        addRow->delegate = ending;
        const QPointer<TodayAddTableCellView> alive = addRow.get();
        support::click(onButton ? static_cast<QWidget&>(*alive->addButton) : *alive->titleLabel);
        EXPECT_FALSE(addRow);
        support::flushDeferredDeletes();
        EXPECT_TRUE(alive.isNull());
    }
}

} // namespace
} // namespace rows

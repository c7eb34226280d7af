#include "controller/ControllerTest.h"

#include "support/Application.h"

#include <QPointer>

namespace controller {
namespace {

using namespace std::chrono_literals;

class LifetimeTest : public ControllerTest {
protected:
    // Drops the reference that keeps the controller alive.
    [[nodiscard]] std::weak_ptr<TodayViewController> release() {
        const std::weak_ptr<TodayViewController> weak = controller;
        controller->setPreferredContentSizeChanged(nullptr);
        controller->releaseViews();
        controller = nullptr;
        support::flushDeferredDeletes();
        return weak;
    }
};

TEST_F(LifetimeTest, rowsKeepTheirControllerUntilItsViewsAreReleased) {
    giveFeedOf(2);
    load();
    const std::weak_ptr<TodayViewController> weak = controller;
    const auto held = controller;
    controller = nullptr;
    EXPECT_GT(weak.use_count(), 1); // those of the rows and of the last row
    controller = held;
}

TEST_F(LifetimeTest, nothingKeepsAnIdleController) {
    giveFeedOf(3);
    load();
    EXPECT_TRUE(release().expired());
}

TEST_F(LifetimeTest, nothingKeepsAControllerWithAnOpenRow) {
    giveFeedOf(3);
    load();
    row(1).cellClicked();
    EXPECT_TRUE(release().expired());
    queue.advance(1s);
}

TEST_F(LifetimeTest, nothingKeepsAControllerWithAWaitingSheet) {
    giveFeedOf(3);
    load();
    act(0, Action::Later(0));
    const QPointer<TodayActionSheetView> asked = &sheet();
    EXPECT_TRUE(release().expired());
    queue.advance(1s);
    support::flushDeferredDeletes();
    EXPECT_FALSE(asked);
}

TEST_F(LifetimeTest, anAnsweredSheetLivesUntilItsReport) {
    giveFeedOf(3);
    load();
    act(0, Action::Later(0));
    sheet().checkButtonClick1();
    const QPointer<TodayActionSheetView> asked = &sheet();
    EXPECT_TRUE(release().expired());
    EXPECT_TRUE(asked);
    queue.advance(500ms);
    support::flushDeferredDeletes();
    EXPECT_FALSE(asked);
}

TEST_F(LifetimeTest, aPendingRefreshKeepsItsControllerUntilItHasRun) {
    giveFeedOf(3);
    load();
    act(0, Action::Paid());
    const auto weak = release();
    EXPECT_FALSE(weak.expired());
    queue.advance(299ms);
    EXPECT_FALSE(weak.expired());
    queue.advance(1ms);
    EXPECT_TRUE(weak.expired());
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(LifetimeTest, ofTwoPendingRefreshesTheLastLetsGo) {
    giveFeedOf(4);
    load();
    act(2, Action::Paid());
    queue.advance(200ms);
    act(0, Action::Paid());
    const auto weak = release();
    queue.advance(299ms);
    support::flushDeferredDeletes();
    EXPECT_FALSE(weak.expired());
    queue.advance(1ms);
    EXPECT_TRUE(weak.expired());
}

TEST_F(LifetimeTest, rowsOfAFormerLoadAreGone) {
    giveFeedOf(2);
    load();
    const QPointer<TodayTableCellView> first = &row(0);
    const QPointer<TodayTableCellView> second = &row(1);
    row(1).cellClicked();
    queue.advance(1s);
    controller->loadData();
    support::flushDeferredDeletes();
    EXPECT_FALSE(first);
    EXPECT_FALSE(second);
}

TEST_F(LifetimeTest, aPaidRowLivesAsTheLastExpandedOneUntilAnotherOpens) {
    giveFeedOf(2);
    load();
    const QPointer<TodayTableCellView> paid = &row(0);
    act(0, Action::Paid());
    queue.advance(1s);
    support::flushDeferredDeletes();
    EXPECT_TRUE(paid);
    row(0).cellClicked();
    queue.advance(1s);
    support::flushDeferredDeletes();
    EXPECT_FALSE(paid);
}

TEST_F(LifetimeTest, theViewGoesWithItsController) {
    giveFeedOf(2);
    load();
    const QPointer<platform::View> view = &controller->view();
    const QPointer<TodayTableCellView> cell = &row(0);
    const QPointer<TodayAddTableCellView> last = addRow().get();
    EXPECT_TRUE(release().expired());
    support::flushDeferredDeletes(); // the controller itself went with the last row's
    EXPECT_FALSE(view);
    EXPECT_FALSE(cell);
    EXPECT_FALSE(last);
}

TEST_F(LifetimeTest, aRowThatOutlivesItsControllerReportsToNobody) {
    giveFeedOf(2);
    load();
    const auto cell = controller->cellArray[0];
    const auto before = files();
    EXPECT_TRUE(release().expired());
    cell->cellClicked();
    cell->buttonsPanelUserClickAction(Action::Paid());
    queue.advance(1s);
    EXPECT_EQ(files(), before);
}

TEST_F(LifetimeTest, viewsCanBeReleasedTwiceAndBeforeTheyAreLoaded) {
    controller = std::make_shared<TodayViewController>();
    controller->releaseViews();
    load();
    controller->releaseViews();
    controller->releaseViews();
    EXPECT_EQ(controller->mainTableView->numberOfRows(), 0);
}

TEST_F(LifetimeTest, loadsFollowEachOther) {
    giveFeedOf(3);
    std::vector<std::weak_ptr<TodayViewController>> former;
    for (int i = 0; i < 5; ++i) {
        load();
        former.emplace_back(controller);
        act(0, Action::Later(0));
    }
    end();
    for (const auto& each : former)
        EXPECT_TRUE(each.expired());
}

} // namespace
} // namespace controller

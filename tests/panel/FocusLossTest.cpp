#include "PanelContent.h"
#include "panel/Panel.h"
#include "support/Application.h"
#include "support/Containers.h"
#include "support/Events.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QWindow>

#include <memory>

using namespace std::chrono_literals;

using panel::rowPoint;

namespace {

// A panel with two rows beside a window of another program, as it were.
class FocusLossTest : public testing::Test {
protected:
    FocusLossTest() {
        containers.writeFeed("<array>" + panel::recordOf("A", "a", 0) + panel::recordOf("B", "b", 1) +
                             "</array>");
        panel.setClosed([this] { ++closed; });
        other.show();
    }

    void open(bool hidesOnFocusLoss) {
        panel.open({{}, {}, hidesOnFocusLoss});
        support::settle();
        ASSERT_TRUE(panel.window().isActiveWindow());
    }

    void focusOther() {
        other.windowHandle()->requestActivate();
        support::settle();
        ASSERT_FALSE(panel.window().isActiveWindow());
    }

    void openSheet() const {
        panel.controller().cellArray[0]->cellClicked();
        panel.controller().todayTableViewCellClickedAction(TodayTransactionAction::Later(0));
        panel.controller().cellArray[0]->collapseCell();
    }

    [[nodiscard]] bool isShown() const { return panel.window().isVisible(); }

    support::Containers containers;
    support::ManualClock clock{panel::panelTestMoment};
    support::ManualMainQueue queue;
    QWidget other;
    panel::Panel panel{panel::Backdrop::RoundTranslucent, panel::Height::OfScreen, 320};
    int closed = 0;
};

} // namespace

TEST_F(FocusLossTest, hidesThePanelThatWasAskedToHide) {
    open(true);
    focusOther();
    EXPECT_FALSE(isShown());
    EXPECT_EQ(closed, 1);
}

TEST_F(FocusLossTest, leavesAnyOtherPanelShown) {
    open(false);
    focusOther();
    queue.after(0ms, {});
    queue.advance(0ms);
    EXPECT_TRUE(isShown());
}

TEST_F(FocusLossTest, countsWhatWasAskedForLast) {
    open(true);
    open(false);
    focusOther();
    EXPECT_TRUE(isShown());
    open(true);
    focusOther();
    EXPECT_FALSE(isShown());
}

TEST_F(FocusLossTest, isNoneBeforeThePanelHasHadTheFocus) {
    panel.open({{}, {}, true});
    Q_EMIT qGuiApp->focusWindowChanged(nullptr);
    EXPECT_TRUE(isShown());
}

TEST_F(FocusLossTest, waitsForTheEndOfAPress) {
    open(true);
    support::press(panel.window(), rowPoint(2) + QPoint(150, 0)); // the last row, where nothing happens
    focusOther();
    queue.advance(1s);
    EXPECT_TRUE(isShown());
    support::release(panel.window(), rowPoint(2) + QPoint(150, 0));
    queue.advance(0ms);
    EXPECT_FALSE(isShown());
}

TEST_F(FocusLossTest, waitsForAnAnswerToTheSheetAndForWhatItChooses) {
    open(true);
    openSheet();
    queue.advance(500ms);
    focusOther();
    queue.advance(1s);
    EXPECT_TRUE(isShown());
    panel.controller().actionSheet->checkButtonClick1();
    queue.advance(499ms);
    EXPECT_TRUE(isShown());
    queue.advance(1s);
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(containers.has("-/actions.xml"));
}

TEST_F(FocusLossTest, waitsForDeferredWork) {
    open(true);
    queue.after(300ms, {});
    focusOther();
    queue.advance(299ms);
    EXPECT_TRUE(isShown());
    queue.advance(1ms);
    EXPECT_FALSE(isShown());
}

TEST_F(FocusLossTest, doesNotWaitForAnOpenRow) {
    open(true);
    panel.controller().cellArray[0]->cellClicked();
    queue.advance(1s);
    focusOther();
    EXPECT_FALSE(isShown());
}

TEST_F(FocusLossTest, isForgottenWhereTheFocusComesBackMeanwhile) {
    open(true);
    queue.after(300ms, {});
    focusOther();
    panel.window().windowHandle()->requestActivate();
    support::settle();
    queue.advance(1s);
    EXPECT_TRUE(isShown());
    focusOther();
    EXPECT_FALSE(isShown());
}

TEST_F(FocusLossTest, hidesAPanelWhoseLoadWaits) {
    open(true);
    const auto* first = &panel.controller();
    queue.after(300ms, {});
    panel.open({{}, {}, true}); // a load waits now
    support::settle();
    focusOther();
    queue.advance(1s);
    EXPECT_FALSE(isShown());
    EXPECT_NE(&panel.controller(), first) << "the list of a hidden panel is loaded too";
}

#include "panel/Panel.h"

#include "PanelContent.h"
#include "panel/Snapshot.h"
#include "support/Application.h"
#include "support/Containers.h"
#include "support/Events.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QScreen>
#include <QWindow>

#include <memory>
#include <string>

using namespace std::chrono_literals;

using panel::rowPoint;
using platform::MainQueue;

namespace {

std::string feedOf(int count) {
    std::string feed = "<array>";
    for (int i = 0; i < count; ++i)
        feed += panel::recordOf("N", "p" + std::to_string(i), i);
    return feed + "</array>";
}

class PanelTest : public testing::Test {
protected:
    void open(int transactions, panel::Backdrop backdrop = panel::Backdrop::RoundTranslucent) {
        containers.writeFeed(feedOf(transactions));
        panel = std::make_unique<panel::Panel>(backdrop, panel::Height::OfScreen, 320);
        panel->setClosed([this] { ++closed; });
        panel->open();
    }

    void TearDown() override {
        panel.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    [[nodiscard]] panel::PanelWindow& window() const { return panel->window(); }

    void openSheet() {
        panel->controller().cellArray[0]->cellClicked();
        panel->controller().todayTableViewCellClickedAction(TodayTransactionAction::Later(0));
        panel->controller().cellArray[0]->collapseCell();
    }

    // The view of before stays until the work that is due at the end of this time has run.
    void expectLoadAfter(MainQueue::Duration time) {
        const std::weak_ptr<platform::ViewController> old = panel->controller().weak_from_this();
        queue.advance(time - 1ms);
        EXPECT_EQ(old.lock().get(), &panel->controller()) << "loaded too early";
        queue.advance(1ms);
        support::flushDeferredDeletes();
        EXPECT_TRUE(old.expired());
        const auto* now = &panel->controller();
        queue.after(0ms, {});
        queue.advance(0ms);
        EXPECT_EQ(&panel->controller(), now) << "loaded twice";
    }

    support::Containers containers;
    support::ManualClock clock{panel::panelTestMoment};
    support::ManualMainQueue queue;
    std::unique_ptr<panel::Panel> panel;
    int closed = 0;
};

constexpr int around = 2 * panel::PanelWindow::verticalMargin;

} // namespace

TEST_F(PanelTest, isAsHighAsTheControllerPrefers) {
    open(3);
    EXPECT_EQ(window().height(), 200 + around);
    EXPECT_EQ(window().width(), 320 + 2 * panel::PanelWindow::horizontalMargin);
    EXPECT_EQ(panel->controller().view().bounds().size(), QSizeF(320, 200));
}

TEST_F(PanelTest, followsANewHeightInAFifthOfASecond) {
    open(7, panel::Backdrop::SquareOpaque);
    ASSERT_EQ(window().height(), 300 + around);
    panel->controller().showAllTransactions(0);
    EXPECT_EQ(window().height(), 300 + around);
    queue.advance(100ms);
    EXPECT_EQ(window().height(), 350 + around);
    queue.advance(100ms);
    EXPECT_EQ(window().height(), 400 + around);
}

// The sheet moves in a window that is not painted below it.
TEST_F(PanelTest, isAsHighAsTheTallerOfBothHeightsWhileATranslucentSheetMoves) {
    open(7);
    const auto* scroll = window().findChild<platform::ScrollView*>();
    const auto expectHeights = [&](int ofWindow, int ofSheet) {
        EXPECT_EQ(window().height(), ofWindow + around);
        EXPECT_EQ(scroll->height(), ofSheet);
        const QImage picture = window().grab().toImage();
        EXPECT_GT(qAlpha(picture.pixel(170, ofSheet + around - 1)), 200);
        EXPECT_EQ(qAlpha(picture.pixel(0, ofSheet + around - 1)), 0) << "a square corner";
        if (ofWindow > ofSheet) {
            EXPECT_EQ(qAlpha(picture.pixel(170, ofSheet + around)), 0);
        }
    };
    panel->controller().showAllTransactions(0);
    expectHeights(400, 300);
    queue.advance(100ms);
    expectHeights(400, 350);
    queue.advance(100ms);
    expectHeights(400, 400);
    containers.writeFeed(feedOf(3));
    panel->open();
    expectHeights(400, 400);
    queue.advance(100ms);
    expectHeights(400, 300);
    queue.advance(100ms);
    expectHeights(200, 200);
}

TEST_F(PanelTest, takesTheBackdropThatTheDesktopSupportsWhenItOpens) {
    auto backdrop = panel::Backdrop::SquareOpaque;
    open(1);
    panel->setBackdropOfDesktop([&] { return backdrop; });
    EXPECT_EQ(qAlpha(window().grab().toImage().pixel(0, 0)), 0);
    panel->open();
    EXPECT_EQ(qAlpha(window().grab().toImage().pixel(0, 0)), 0) << "it is shown";
    panel->close();
    panel->open();
    EXPECT_EQ(qAlpha(window().grab().toImage().pixel(0, 0)), 255);
    EXPECT_FALSE(window().windowHandle()->requestedFormat().hasAlpha());
    backdrop = panel::Backdrop::RoundTranslucent;
    panel->close();
    panel->open();
    EXPECT_EQ(qAlpha(window().grab().toImage().pixel(0, 0)), 0);
    EXPECT_TRUE(window().windowHandle()->requestedFormat().hasAlpha());
}

TEST_F(PanelTest, isNeverTallerThanTheScreenAndScrolls) {
    open(100);
    panel->controller().showAllTransactions(0);
    queue.advance(1s);
    EXPECT_LT(window().height(), window().screen()->availableGeometry().height());
    auto* scroll = window().findChild<platform::ScrollView*>();
    ASSERT_NE(scroll, nullptr);
    scroll->scrollTo(1e6);
    EXPECT_EQ(scroll->offset() + scroll->height(), 101 * 50);
}

TEST_F(PanelTest, closesOnEscape) {
    open(1);
    support::pressKey(window(), Qt::Key_Escape);
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(closed, 1);
}

TEST_F(PanelTest, closesOnceWhenTheDesktopClosesIt) {
    open(1);
    window().close();
    EXPECT_EQ(closed, 1);
    panel->close();
    EXPECT_EQ(closed, 1);
}

TEST_F(PanelTest, takesEscapeInAWaitingSheetForCancel) {
    open(2);
    panel->controller().cellArray[0]->cellClicked();
    panel->controller().todayTableViewCellClickedAction(TodayTransactionAction::Later(0));
    support::pressKey(window(), Qt::Key_Escape);
    EXPECT_TRUE(window().isVisible());
    queue.advance(500ms);
    EXPECT_EQ(panel->controller().actionSheet, nullptr);
    EXPECT_EQ(closed, 0);
    EXPECT_FALSE(containers.has("-/actions.xml"));
}

TEST_F(PanelTest, doesNothingOnEscapeInAnAnsweredSheet) {
    open(2);
    panel->controller().cellArray[0]->cellClicked();
    panel->controller().todayTableViewCellClickedAction(TodayTransactionAction::Later(0));
    panel->controller().actionSheet->checkButtonClick1();
    support::pressKey(window(), Qt::Key_Escape);
    EXPECT_TRUE(window().isVisible());
    queue.advance(500ms);
    EXPECT_EQ(closed, 0);
    EXPECT_TRUE(containers.has("-/actions.xml"));
}

TEST_F(PanelTest, carriesOutAChoiceThatIsPendingWhenItCloses) {
    open(2);
    panel->controller().cellArray[0]->cellClicked();
    panel->controller().todayTableViewCellClickedAction(TodayTransactionAction::Later(0));
    panel->controller().actionSheet->checkButtonClick2();
    panel->close();
    EXPECT_FALSE(queue.isIdle());
    queue.advance(500ms);
    EXPECT_TRUE(containers.has("-/actions.xml"));
}

TEST_F(PanelTest, asksForAnUpdateOnOpeningWithoutChangingRows) {
    open(3);
    const auto rows = panel->controller().cellArray;
    containers.writeFeed(feedOf(1));
    panel->controller().widgetPerformUpdateWithCompletionHandler([](platform::UpdateResult) {});
    EXPECT_EQ(panel->controller().cellArray, rows);
}

TEST_F(PanelTest, makesANewControllerEachTimeItIsOpened) {
    open(3);
    const std::weak_ptr<platform::ViewController> first = panel->controller().weak_from_this();
    panel->close();
    containers.writeFeed(feedOf(1));
    panel->open();
    EXPECT_EQ(panel->controller().transactionsArray.size(), 1U);
    EXPECT_EQ(window().height(), 100 + around);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the last row lets go as it ends
    EXPECT_TRUE(first.expired());
}

TEST_F(PanelTest, openedAgainItCarriesOutAPendingChoiceBeforeItLoads) {
    open(2);
    const auto* first = &panel->controller();
    openSheet();
    panel->controller().actionSheet->checkButtonClick2();
    panel->close();
    panel->open();
    EXPECT_EQ(&panel->controller(), first);
    EXPECT_FALSE(containers.has("-/actions.xml"));
    expectLoadAfter(500ms);
    EXPECT_TRUE(containers.has("-/actions.xml"));
    EXPECT_EQ(panel->controller().actionSheet, nullptr);
    EXPECT_EQ(panel->controller().transactionsArray.size(), 1U) << "the other lies days ahead";
}

TEST_F(PanelTest, openedAgainItRefreshesALeftRowBeforeItLoads) {
    open(3);
    const auto* first = &panel->controller();
    panel->controller().cellArray[1]->cellClicked();
    panel->controller().todayTableViewCellClickedAction(TodayTransactionAction::Paid());
    panel->close();
    panel->open();
    EXPECT_EQ(&panel->controller(), first);
    panel->controller().cellArray[0]->collapseCell();
    expectLoadAfter(300ms);
    queue.advance(200ms); // the window comes to its height
    EXPECT_EQ(window().height(), 150 + around);
}

TEST_F(PanelTest, openedAgainItForgetsAnOpenRowAndAWaitingSheet) {
    open(2);
    panel->controller().cellArray[0]->cellClicked();
    queue.advance(200ms);
    panel->close();
    panel->open();
    EXPECT_FALSE(panel->controller().cellArray[0]->isExpanded());
    openSheet();
    queue.advance(200ms);
    panel->close();
    panel->open();
    EXPECT_EQ(panel->controller().actionSheet, nullptr);
    EXPECT_FALSE(panel->controller().mainTableView->isHidden());
    EXPECT_FALSE(containers.has("-/actions.xml"));
}

TEST_F(PanelTest, openedAgainItForgetsAPressThatWasHeld) {
    open(2);
    support::press(window(), rowPoint(0));
    panel->close();
    panel->open();
    support::release(window(), rowPoint(0));
    EXPECT_FALSE(panel->controller().cellArray[0]->isExpanded());
    EXPECT_EQ(panel->controller().cellArray[0]->cellContentView->alphaValue(), 1);
}

TEST_F(PanelTest, loadsNothingUnderAHandThatIsAtWork) {
    open(2);
    const auto* first = &panel->controller();
    queue.after(500ms, {}); // as a choice that is still to be carried out
    panel->close();
    panel->open();
    const auto expectNoLoad = [&] {
        queue.after(0ms, {});
        queue.advance(0ms);
        EXPECT_EQ(&panel->controller(), first);
    };
    support::press(window(), rowPoint(0));
    queue.advance(500ms);
    expectNoLoad();
    support::release(window(), rowPoint(0));
    expectNoLoad(); // it is open
    queue.advance(200ms);
    expectNoLoad();
    panel->controller().todayTableViewCellClickedAction(TodayTransactionAction::Later(0));
    panel->controller().cellArray[0]->collapseCell();
    queue.advance(200ms);
    expectNoLoad(); // a sheet is shown
    panel->controller().actionSheet->cancelButtonClick();
    expectNoLoad();
    expectLoadAfter(500ms);
}

TEST_F(PanelTest, loadsWhenAPressEndsThatHasNoEffect) {
    open(0);
    containers.writeFeed(feedOf(1));
    queue.after(200ms, {});
    panel->open();
    support::press(window(), rowPoint(0) + QPoint(100, 0));
    const auto* first = &panel->controller();
    queue.advance(1s);
    EXPECT_EQ(&panel->controller(), first);
    support::release(window(), rowPoint(0) + QPoint(100, 0));
    EXPECT_EQ(&panel->controller(), first);
    queue.advance(0ms);
    EXPECT_EQ(panel->controller().transactionsArray.size(), 1U);
}

TEST_F(PanelTest, openedWhileItIsShownItLoadsAnewTakesTheFocusAndStaysWhereItIs) {
    open(3);
    QWidget other;
    other.show();
    other.windowHandle()->requestActivate();
    support::settle();
    ASSERT_FALSE(window().isActiveWindow());
    const QPoint place = window().pos() - QPoint(200, -30);
    window().move(place);
    const auto* first = &panel->controller();
    containers.writeFeed(feedOf(1));
    panel->open({window().screen()->name(), {}, false});
    EXPECT_NE(&panel->controller(), first);
    EXPECT_EQ(panel->controller().transactionsArray.size(), 1U);
    support::settle();
    EXPECT_TRUE(window().isActiveWindow());
    EXPECT_EQ(window().pos(), place);
    EXPECT_EQ(closed, 0);
}

TEST_F(PanelTest, opensWhereItWasOnAScreenThatIsNotThere) {
    open(1);
    const QPoint place = window().pos();
    panel->close();
    panel->open({QStringLiteral("no such screen"), {}, false});
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().pos(), place);
}

TEST_F(PanelTest, leavesNoActivationTokenInTheEnvironment) {
    open(1);
    panel->close();
    panel->open({{}, QStringLiteral("token"), false});
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

TEST_F(PanelTest, loadsWhatItAwaitsAlsoWhenItHasClosedMeanwhile) {
    open(2);
    openSheet();
    panel->controller().actionSheet->checkButtonClick2();
    panel->close();
    panel->open();
    panel->close();
    const auto* first = &panel->controller();
    queue.advance(500ms);
    EXPECT_NE(&panel->controller(), first);
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(closed, 2);
}

TEST_F(PanelTest, marksNoRowUntilAKeyComesToIt) {
    open(2);
    const QImage before = window().grab().toImage();
    window().activateWindow();
    QCoreApplication::processEvents();
    EXPECT_EQ(window().grab().toImage(), before);
}

TEST_F(PanelTest, drawsNothingOutsideItsRoundCorners) {
    open(1);
    panel::Snapshot snapshot;
    snapshot.file = QString::fromStdString(containers.path("picture.png"));
    ASSERT_TRUE(panel::writeSnapshot(snapshot));
    const QImage picture(snapshot.file);
    EXPECT_EQ(picture.size(), QSize(344, 100 + around));
    EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 0);
    EXPECT_GT(qAlpha(picture.pixel(170, 5)), 200);
}

// The toolkit shares out what it blends over many lines to threads; starting them takes longer than the
// blending.
TEST_F(PanelTest, paintsWithoutStartingThreads) {
    const auto threads = [] {
        return QDir(QStringLiteral("/proc/self/task")).entryList({}, QDir::Dirs).size();
    };
    const auto before = threads();
    open(5);
    ASSERT_FALSE(window().grab().isNull());
    EXPECT_EQ(threads(), before);
}

// The offscreen platform has an interface to an X server and no connection behind it.
TEST(Backdrop, isRoundWhereThereIsNoServerToAsk) {
    EXPECT_EQ(panel::backdropOfDesktop(), panel::Backdrop::RoundTranslucent);
}

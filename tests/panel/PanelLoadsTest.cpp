// When an open panel loads its list anew, and what stays as it was.
#include "panel/Panel.h"

#include "PanelContent.h"
#include "exchange/ManualTriggers.h"
#include "support/Application.h"
#include "support/Containers.h"
#include "support/Events.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>

#include <memory>
#include <string>
#include <vector>

using namespace std::chrono_literals;

using panel::rowPoint;

namespace {

// One record for each name, in this order of dates.
std::string feedOf(const std::string& names) {
    std::string feed = "<array>";
    for (const char name : names)
        feed += panel::recordOf(std::string(1, name), std::string(1, name), name);
    return feed + "</array>";
}

// Counts how often a window brings what it has painted to the screen.
class Updates final : public QObject {
public:
    explicit Updates(QWidget& window) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::UpdateRequest;
        return false;
    }
    int count = 0;
};

class PanelLoadsTest : public testing::Test {
protected:
    PanelLoadsTest() {
        containers.writeFeed(feedOf("abc"));
        ManualTriggers manual;
        alarm = manual.alarm;
        panel = std::make_unique<panel::Panel>(panel::Backdrop::RoundTranslucent, panel::Height::OfScreen,
                                               320, std::move(manual.triggers));
        panel->open();
        window().activateWindow();
        QCoreApplication::processEvents();
    }

    ~PanelLoadsTest() override {
        panel.reset();
        support::flushDeferredDeletes();
    }

    [[nodiscard]] panel::PanelWindow& window() const { return panel->window(); }
    [[nodiscard]] const std::vector<std::shared_ptr<TodayTableCellView>>& rows() const {
        return panel->controller().cellArray;
    }

    // The host writes a feed, and something calls for a load.
    void change(const std::string& names) const {
        containers.writeFeed(feedOf(names));
        alarm->ring();
    }

    [[nodiscard]] std::string names() const {
        std::string all;
        for (const auto& row : rows())
            all += row->item->name.toStdString();
        return all;
    }

    [[nodiscard]] QImage picture() const { return window().grab().toImage(); }

    // The name of the transaction whose row has the keyboard.
    [[nodiscard]] std::string focusedRow() const {
        const auto* row = qobject_cast<TodayTableCellView*>(window().focusWidget());
        return row ? row->item->name.toStdString() : "none";
    }

    void pressTab(int times) const {
        for (int i = 0; i < times; ++i)
            support::pressKey(*window().focusWidget(), Qt::Key_Tab);
    }

    support::Containers containers;
    support::ManualClock clock{panel::panelTestMoment};
    support::ManualMainQueue queue;
    ManualAlarm* alarm = nullptr;
    std::unique_ptr<panel::Panel> panel;
};

} // namespace

TEST_F(PanelLoadsTest, makesANewControllerAndView) {
    const std::weak_ptr<platform::ViewController> first = panel->controller().weak_from_this();
    change("bcde");
    EXPECT_EQ(names(), "bcde");
    support::flushDeferredDeletes();
    EXPECT_TRUE(first.expired());
    queue.advance(200ms);
    EXPECT_EQ(window().height(), 250 + 2 * panel::PanelWindow::verticalMargin);
}

TEST_F(PanelLoadsTest, waitsForAPressToEnd) {
    support::press(window(), rowPoint(3) + QPoint(100, 0)); // on the last row
    const QImage before = picture();
    change("b");
    queue.advance(1s);
    EXPECT_EQ(names(), "abc");
    EXPECT_EQ(picture(), before) << "a load that waits says nothing";
    support::release(window(), rowPoint(3) + QPoint(100, 0));
    EXPECT_EQ(names(), "abc");
    queue.advance(0ms);
    EXPECT_EQ(names(), "b");
}

TEST_F(PanelLoadsTest, waitsForAnOpenRowToClose) {
    support::click(window(), rowPoint(1));
    queue.advance(200ms);
    const QImage before = picture();
    change("b");
    alarm->ring(); // again
    queue.advance(1s);
    EXPECT_EQ(names(), "abc");
    EXPECT_EQ(picture(), before) << "a load that waits says nothing";
    support::click(window(), rowPoint(1));
    queue.advance(199ms);
    EXPECT_EQ(names(), "abc") << "it is still closing";
    queue.advance(1ms);
    EXPECT_EQ(names(), "b");
    const auto* loaded = &panel->controller();
    queue.after(0ms, {});
    queue.advance(1s);
    EXPECT_EQ(&panel->controller(), loaded) << "once";
}

TEST_F(PanelLoadsTest, waitsForASheetToBeAnswered) {
    support::click(window(), rowPoint(0));
    queue.advance(200ms);
    panel->controller().todayTableViewCellClickedAction(TodayTransactionAction::Later(0));
    panel->controller().cellArray[0]->collapseCell();
    queue.advance(1s);
    change("b");
    EXPECT_EQ(names(), "abc");
    ASSERT_NE(panel->controller().actionSheet, nullptr);
    panel->controller().actionSheet->cancelButtonClick();
    queue.advance(499ms);
    EXPECT_EQ(names(), "abc");
    queue.advance(1ms);
    EXPECT_EQ(names(), "b");
    EXPECT_FALSE(containers.has("-/actions.xml"));
}

TEST_F(PanelLoadsTest, waitsForTheRefreshAfterARemoval) {
    support::click(window(), rowPoint(0));
    queue.advance(200ms);
    panel->controller().todayTableViewCellClickedAction(TodayTransactionAction::Paid());
    change("bcd");
    queue.advance(299ms);
    EXPECT_EQ(names(), "bc");
    queue.advance(1ms);
    EXPECT_EQ(names(), "bcd");
}

TEST_F(PanelLoadsTest, keepsItsListTrueWhileItIsHidden) {
    support::click(window(), rowPoint(0));
    queue.advance(200ms);
    change("b");
    panel->close();
    queue.after(0ms, {});
    queue.advance(1s);
    EXPECT_EQ(names(), "b");
    change("ab");
    EXPECT_EQ(names(), "ab");
    EXPECT_FALSE(window().isVisible());
}

TEST_F(PanelLoadsTest, setsTheAlarmToTheNextDueTransaction) {
    clock.set(1773120000 + 'b' - 0.5);
    change("abc");
    EXPECT_EQ(alarm->moment, 1773120000 + 'b');
    clock.set(1773120000 + 'b' + 0.5);
    alarm->ring();
    EXPECT_EQ(alarm->moment, 1773120000 + 'c');
}

TEST_F(PanelLoadsTest, leavesTheWindowWhereItIs) {
    window().move(5, 7);
    change("abc");
    EXPECT_EQ(window().pos(), QPoint(5, 7));
}

TEST_F(PanelLoadsTest, looksTheSameWhereNothingHasChanged) {
    const QImage before = picture();
    change("abc");
    EXPECT_EQ(picture(), before);
    pressTab(2);
    const QImage withFocus = picture();
    ASSERT_NE(withFocus, before);
    change("abc");
    EXPECT_EQ(picture(), withFocus);
}

TEST_F(PanelLoadsTest, showsTheNewViewAtOnce) {
    Updates updates(window());
    change("abd");
    QCoreApplication::processEvents();
    EXPECT_EQ(updates.count, 1);
}

TEST_F(PanelLoadsTest, keepsTheKeyboardAtTheSameTransaction) {
    pressTab(2);
    ASSERT_EQ(focusedRow(), "b");
    change("Aabc");
    EXPECT_EQ(focusedRow(), "b");
    change("bc");
    EXPECT_EQ(focusedRow(), "b");
}

TEST_F(PanelLoadsTest, keepsTheKeyboardAtThePlaceOfATransactionThatIsGone) {
    pressTab(2);
    change("ac");
    EXPECT_EQ(focusedRow(), "c");
    change("");
    EXPECT_NE(qobject_cast<TodayAddTableCellView*>(window().focusWidget()), nullptr);
}

TEST_F(PanelLoadsTest, keepsTheKeyboardInTheLastRow) {
    pressTab(4);
    ASSERT_NE(qobject_cast<TodayAddTableCellView*>(window().focusWidget()), nullptr);
    change("a");
    EXPECT_NE(qobject_cast<TodayAddTableCellView*>(window().focusWidget()), nullptr);
    pressTab(1);
    ASSERT_NE(qobject_cast<platform::Button*>(window().focusWidget()), nullptr);
    change("ab");
    EXPECT_NE(qobject_cast<platform::Button*>(window().focusWidget()), nullptr);
}

TEST_F(PanelLoadsTest, givesTheKeyboardToNoRowThatDidNotHaveIt) {
    auto* before = window().focusWidget();
    change("ab");
    EXPECT_EQ(window().focusWidget(), before);
    EXPECT_EQ(focusedRow(), "none");
}

TEST_F(PanelLoadsTest, staysScrolledToWhereItIs) {
    containers.writeFeed(feedOf("abcdefghijklmnopqrstuvwxyz"));
    panel->close();
    panel->open();
    panel->controller().showAllTransactions(0);
    queue.advance(200ms);
    auto* scroll = window().findChild<platform::ScrollView*>();
    scroll->scrollTo(100);
    ASSERT_EQ(scroll->offset(), 100);
    change("abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(scroll->offset(), 100) << "while the window comes to its height";
    panel->close();
    panel->open();
    EXPECT_EQ(scroll->offset(), 0);
}

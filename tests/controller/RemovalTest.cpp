// Removing the row of a paid or deleted transaction.
#include "controller/ControllerTest.h"

#include <QEvent>

#include <functional>
#include <limits>
#include <utility>

namespace controller {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class RemovalTest : public ControllerTest {};

TEST_F(RemovalTest, theNextHiddenTransactionSlidesInAtTheEndOfTheShownOnes) {
    giveFeedOf(4);
    load(Count::Custom(3));
    const auto leaving = controller->cellArray[1];
    const auto arriving = controller->cellArray[3];
    act(1, Action::Paid());
    EXPECT_THAT(names(), ElementsAre("A", "C", "D"));
    EXPECT_THAT(shown(), ElementsAre("A", "C", "D", "[ShowAllTitle]"));
    EXPECT_EQ(table().viewAtRow(2), arriving);
    EXPECT_EQ(leaving->superview(), &table());
    queue.advance(50ms);
    EXPECT_NEAR(leaving->alphaValue(), 0.5, 0.01); // fades in the first half
    queue.advance(50ms);
    EXPECT_EQ(leaving->alphaValue(), 0);
    EXPECT_GT(arriving->frame().y(), 50.0); // slides down to 100
    EXPECT_LT(arriving->frame().y(), 100.0);
    queue.advance(100ms);
    EXPECT_EQ(leaving->superview(), nullptr);
    EXPECT_EQ(arriving->frame(), QRectF(0, 100, 320, 50));
    queue.advance(99ms);
    EXPECT_THAT(shown(), ElementsAre("A", "C", "D", "[ShowAllTitle]"));
    queue.advance(1ms);
    EXPECT_THAT(shown(), ElementsAre("A", "C", "D", "[]"));
    EXPECT_EQ(height(), 200.0);
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(RemovalTest, theLastShownRowMakesRoomForTheNextHiddenOne) {
    giveFeedOf(5);
    load(Count::Custom(3));
    act(2, Action::Paid());
    EXPECT_THAT(shown(), ElementsAre("A", "B", "D", "[ShowAllTitle]"));
    queue.advance(300ms);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "D", "[ShowAllTitle]"));
}

TEST_F(RemovalTest, withNothingHiddenNoRowComesIn) {
    giveFeedOf(3);
    load(Count::Custom(3));
    act(0, Action::Paid());
    EXPECT_THAT(shown(), ElementsAre("B", "C", "[]"));
    EXPECT_EQ(height(), 200.0);
    queue.advance(300ms);
    EXPECT_EQ(height(), 150.0);
}

TEST_F(RemovalTest, underALimitOfOneTheNextOneTakesThePlace) {
    giveFeedOf(2);
    load(Count::Custom(1));
    act(0, Action::Paid());
    EXPECT_EQ(table().numberOfRows(), 2);
    queue.advance(299ms);
    EXPECT_THAT(shown(), ElementsAre("B", "[ShowAllTitle]"));
    queue.advance(1ms);
    EXPECT_THAT(shown(), ElementsAre("B", "[]"));
}

TEST_F(RemovalTest, theOnlyTransactionUnderAllLeavesTheEmptyList) {
    giveFeedOf(1);
    load(Count::All());
    act(0, Action::Paid());
    EXPECT_THAT(shown(), ElementsAre("[]"));
    EXPECT_EQ(height(), 100.0);
    queue.advance(299ms);
    EXPECT_THAT(shown(), ElementsAre("[]"));
    EXPECT_EQ(height(), 100.0);
    queue.advance(1ms);
    EXPECT_THAT(shown(), ElementsAre("[TodayViewEmtyText]"));
    EXPECT_EQ(height(), 50.0);
}

TEST_F(RemovalTest, underAllNoRowComesIn) {
    giveFeedOf(4);
    load(Count::All());
    act(1, Action::Paid());
    EXPECT_THAT(shown(), ElementsAre("A", "C", "D", "[]"));
}

TEST_F(RemovalTest, deletingFromASinglePlanAsksNothing) {
    giveFeedOf(2);
    load();
    act(0, Action::Delete(false));
    EXPECT_EQ(controller->actionSheet, nullptr);
    EXPECT_FALSE(table().isHidden());
    EXPECT_THAT(shown(), ElementsAre("B", "[]"));
    EXPECT_EQ(controller->currentAction, std::nullopt);
}

class DeleteFlagTest : public RemovalTest, public testing::WithParamInterface<bool> {};

TEST_P(DeleteFlagTest, isPassedOnAsTheRowSentIt) {
    giveFeedOf(2);
    load();
    const Files expected = filesAfter(*transaction(0), Action::Delete(GetParam()));
    act(0, Action::Delete(GetParam()));
    EXPECT_EQ(files(), expected);
}

INSTANTIATE_TEST_SUITE_P(Flags, DeleteFlagTest, testing::Bool());

TEST_F(RemovalTest, lastRowAndTransactionStayTheCurrentOnes) {
    giveFeedOf(2);
    load();
    const auto cell = controller->cellArray[0];
    const auto paid = transaction(0);
    act(0, Action::Paid());
    queue.advance(1s);
    EXPECT_EQ(controller->lastExpandedCell, cell);
    EXPECT_EQ(controller->currentTransaction, paid);
    EXPECT_TRUE(cell->isExpanded());
    // The next row that opens still reaches it.
    row(0).cellClicked();
    EXPECT_FALSE(cell->isExpanded());
    EXPECT_EQ(controller->currentTransaction->name, QStringLiteral("B"));
}

// Runs a function when a view is enabled or disabled.
class EnabledWatch final : public QObject {
public:
    EnabledWatch(platform::View& view, std::function<void()> changed)
        : changed_(std::move(changed)) {
        view.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::EnabledChange)
            changed_();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> changed_;
};

class WrittenFirstTest : public RemovalTest, public testing::WithParamInterface<Action> {};

TEST_P(WrittenFirstTest, theActionIsWrittenBeforeTheRowLeaves) {
    giveFeedOf(3);
    load();
    const Files expected = filesAfter(*transaction(1), GetParam());
    Files then;
    std::size_t listed = 0;
    const EnabledWatch watch(row(1), [&] {
        then = files();
        listed = table().numberOfRows();
    });
    act(1, GetParam());
    EXPECT_EQ(listed, 3U) << "looked when the row had just left";
    EXPECT_EQ(then, expected);
}

INSTANTIATE_TEST_SUITE_P(Actions, WrittenFirstTest, testing::Values(Action::Paid(), Action::Delete(false)),
                         [](const auto& listed) {
                             return std::string(listed.param.isPaid() ? "paid" : "deleting");
                         });

TEST_F(RemovalTest, theFeedIsNotReadAgain) {
    giveFeedOf(3);
    load();
    act(0, Action::Paid());
    giveFatalFeed();
    queue.advance(1s);
    EXPECT_THAT(shown(), ElementsAre("B", "C", "[]"));
}

TEST_F(RemovalTest, rowsAndTransactionsStayPaired) {
    giveFeedOf(6);
    load();
    act(4, Action::Paid());
    act(1, Action::Paid());
    queue.advance(300ms);
    ASSERT_EQ(controller->cellArray.size(), controller->transactionsArray.size());
    for (std::size_t i = 0; i < controller->cellArray.size(); ++i) {
        EXPECT_EQ(row(i).item, transaction(i)) << i;
        EXPECT_EQ(transaction(i)->index, static_cast<std::int64_t>(i)) << i;
    }
}

TEST_F(RemovalTest, aFailedWriteDoesNotKeepTheRow) {
    giveFeedOf(2);
    load();
    setSettings({{"account_pk", plist::Value("blocked")}});
    write("blocked", "a file where the account's folder should be");
    act(0, Action::Paid());
    EXPECT_EQ(read("blocked"), "a file where the account's folder should be");
    EXPECT_THAT(shown(), ElementsAre("B", "[]"));
}

TEST_F(RemovalTest, aTransactionWithoutAPreparedRowIsRemovedToo) {
    giveFeedOf(1);
    load(Count::All());
    controller->cellArray.clear();
    controller->removeTransactionFromArrayAndFromTable(transaction(0));
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("[]"));
}

// --- two removals within 0.3 seconds: indexes are stale until the refresh, on purpose

TEST_F(RemovalTest, theSecondOfTwoQuickRemovalsUsesTheNumbersFromBeforeTheFirst) {
    giveFeedOf(4);
    load(Count::All());
    act(0, Action::Paid());
    EXPECT_EQ(transaction(1)->index, 2); // C
    act(1, Action::Paid());
    EXPECT_EQ(controller->currentTransaction->name, QStringLiteral("C"));
    EXPECT_THAT(names(), ElementsAre("B", "C")); // D is gone, which stood at number 2
    EXPECT_THAT(shown(), ElementsAre("B", "C", "[]"));
    queue.advance(300ms);
    EXPECT_TRUE(queue.isIdle());
    EXPECT_THAT(shown(), ElementsAre("B", "C", "[]"));
    EXPECT_EQ(transaction(0)->index, 0);
    EXPECT_EQ(transaction(1)->index, 1);
    // The files are right, as the next load shows.
    controller->loadData();
    EXPECT_THAT(names(), ElementsAre("B", "D"));
}

TEST_F(RemovalTest, theSecondRemovalOfAnEarlierRowIsRight) {
    giveFeedOf(4);
    load(Count::All());
    act(2, Action::Paid());
    act(0, Action::Paid());
    EXPECT_THAT(names(), ElementsAre("B", "D"));
}

TEST_F(RemovalTest, theSecondRemovalAfterTheRefreshIsRight) {
    giveFeedOf(4);
    load(Count::All());
    act(0, Action::Paid());
    queue.advance(300ms);
    act(1, Action::Paid());
    EXPECT_THAT(names(), ElementsAre("B", "D"));
}

TEST_F(RemovalTest, eachRemovalRefreshesAfter300MillisecondsOfItsOwn) {
    giveFeedOf(4);
    load(Count::All());
    act(2, Action::Paid());
    queue.advance(200ms);
    act(0, Action::Paid());
    EXPECT_EQ(height(), 250.0);
    queue.advance(100ms);
    EXPECT_EQ(height(), 150.0); // the first one's refresh counts both
    queue.advance(200ms);
    EXPECT_TRUE(queue.isIdle());
    EXPECT_EQ(height(), 150.0);
}

TEST_F(RemovalTest, aSecondRemovalWithAStaleNumberBeyondTheListIsFatal) {
    giveFeedOf(3);
    load(Count::All());
    act(0, Action::Paid());
    EXPECT_FATAL(act(1, Action::Paid())); // C, number 2 of two
}

// A second action on a row that is being removed is not prevented.
TEST_F(RemovalTest, payingTwiceLogsTwiceAndTakesTheNextRowToo) {
    giveFeedOf(3);
    load(Count::All());
    act(0, Action::Paid());
    const std::string once = log();
    controller->todayTableViewCellClickedAction(Action::Paid());
    EXPECT_GT(log().size(), once.size());
    EXPECT_THAT(names(), ElementsAre("C"));
}

class OutsideTest : public RemovalTest, public testing::WithParamInterface<std::int64_t> {};

TEST_P(OutsideTest, aNumberOutsideTheListIsFatal) {
    giveFeedOf(2);
    load();
    transaction(0)->index = GetParam();
    EXPECT_FATAL(act(0, Action::Paid()));
}

INSTANTIATE_TEST_SUITE_P(Numbers, OutsideTest,
                         testing::Values(-1, 2, std::numeric_limits<std::int64_t>::min(),
                                         std::numeric_limits<std::int64_t>::max()));

// --- removals during other changes

TEST_F(RemovalTest, aSheetThatOpensBeforeTheRefreshStays) {
    giveFeedOf(3);
    load();
    act(0, Action::Paid());
    act(0, Action::Later(0));
    EXPECT_EQ(height(), 245.0);
    queue.advance(300ms);
    EXPECT_EQ(height(), 245.0);
    EXPECT_TRUE(table().isHidden());
    ASSERT_NE(controller->actionSheet, nullptr);
    EXPECT_EQ(sheet().superview(), &controller->view());
}

TEST_F(RemovalTest, aLoadBeforeTheRefreshIsShownByIt) {
    giveFeedOf(3);
    load();
    act(0, Action::Paid());
    giveFeedOf(2);
    controller->loadData();
    queue.advance(300ms);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "[]"));
}

} // namespace
} // namespace controller

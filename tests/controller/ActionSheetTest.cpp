// The action sheet: when it is shown, its question, and the effect of its answer.
#include "controller/ControllerTest.h"

#include "exchange/TodayWidgetLogic.h"
#include "platform/views/ScrollView.h"

namespace controller {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class ActionSheetTest : public ControllerTest {
protected:
    // The titles of the choices whose buttons are not hidden.
    [[nodiscard]] std::vector<std::string> choices() const {
        std::vector<std::string> texts;
        for (const auto* button :
             {sheet().checkButton1.get(), sheet().checkButton2.get(), sheet().checkButton3.get()})
            if (!button->isHidden())
                texts.push_back(button->attributedTitle().text.toStdString());
        return texts;
    }

    void expectList() const {
        EXPECT_EQ(controller->actionSheet, nullptr);
        EXPECT_EQ(controller->currentAction, std::nullopt);
        EXPECT_FALSE(table().isHidden());
    }
};

// --- the question

TEST_F(ActionSheetTest, laterAsksWithThreeChoices) {
    giveFeedOf(2);
    load();
    act(1, Action::Later(0));
    EXPECT_THAT(choices(), ElementsAre("ResheduleTomorrow", "Reshedule3Days", "ResheduleNextWeek"));
    EXPECT_EQ(sheet().titleLabel->stringValue(), QStringLiteral("B: $ 9"));
    EXPECT_EQ(sheet().delegate, std::shared_ptr<TodayActionSheetViewDelegate>(controller));
    EXPECT_EQ(controller->currentAction, Action::Later(0));
    EXPECT_EQ(controller->currentTransaction, transaction(1));
    EXPECT_TRUE(table().isHidden());
    EXPECT_EQ(sheet().superview(), &controller->view());
}

TEST_F(ActionSheetTest, laterAsksForARepeatingPlanToo) {
    giveFeedOf(2, false);
    load();
    act(0, Action::Later(0));
    EXPECT_THAT(choices(), ElementsAre("ResheduleTomorrow", "Reshedule3Days", "ResheduleNextWeek"));
}

TEST_F(ActionSheetTest, deleteOnARepeatingPlanAsksWithTwoChoices) {
    giveFeedOf(2, false);
    load();
    const Files before = files();
    act(0, Action::Delete(false));
    EXPECT_THAT(choices(), ElementsAre("DeleteFutureEnteres", "DeleteCurrentPlanButtonTitle"));
    EXPECT_EQ(sheet().titleLabel->stringValue(), QStringLiteral("A: $ 9"));
    EXPECT_EQ(controller->currentAction, Action::Delete(false));
    EXPECT_TRUE(table().isHidden());
    EXPECT_EQ(files(), before);
}

TEST_F(ActionSheetTest, theActionIsKeptAsTheRowSentIt) {
    giveFeedOf(1, false);
    load();
    act(0, Action::Later(42));
    EXPECT_EQ(controller->currentAction, Action::Later(42));
    act(0, Action::Delete(true));
    EXPECT_EQ(controller->currentAction, Action::Delete(true));
}

TEST_F(ActionSheetTest, anEmptyNameLeavesTheColonInTheTitle) {
    giveFeed({{"", tenthOfMarch, true, "-12 €"}});
    load();
    act(0, Action::Later(0));
    EXPECT_EQ(sheet().titleLabel->stringValue(), QStringLiteral(": -12 €"));
}

TEST_F(ActionSheetTest, theRowClosesBehindTheSheet) {
    giveFeedOf(2);
    load();
    act(0, Action::Later(0));
    EXPECT_FALSE(row(0).isExpanded());
    EXPECT_EQ(controller->lastExpandedCell, controller->cellArray[0]);
}

TEST_F(ActionSheetTest, aSheetReplacesTheOneBefore) {
    giveFeedOf(2, false);
    load();
    act(0, Action::Later(0));
    const auto old = controller->actionSheet;
    controller->todayTableViewCellClickedAction(Action::Delete(false));
    EXPECT_NE(controller->actionSheet, old);
    EXPECT_EQ(old->superview(), nullptr);
    EXPECT_EQ(sheet().superview(), &controller->view());
    EXPECT_EQ(controller->currentAction, Action::Delete(false));
}

// --- the frame

TEST_F(ActionSheetTest, aTallerSheetStandsTenPointsAboveTheTop) {
    giveFeedOf(3);
    followsPreferredHeight = false;
    load();
    controller->view().setFrame(QRectF(0, 0, 320, 200));
    act(0, Action::Later(0));
    ASSERT_EQ(height(), 245.0);
    // y is 200 - 245 + 10 = -35 upwards from the lower edge of a view of 200.
    EXPECT_EQ(sheet().frame(), QRectF(0, -10, 320, 245));
    EXPECT_EQ(200 - sheet().frame().bottom(), -35.0);
}

TEST_F(ActionSheetTest, aSheetOverTallerRowsStandsTenPointsAboveTheTopToo) {
    giveFeedOf(5);
    followsPreferredHeight = false;
    load();
    controller->view().setFrame(QRectF(0, 0, 320, 300));
    act(0, Action::Later(0));
    ASSERT_EQ(height(), 300.0);
    // y is 300 - 300 + 10 = 10.
    EXPECT_EQ(sheet().frame(), QRectF(0, -10, 320, 300));
    EXPECT_EQ(300 - sheet().frame().bottom(), 10.0);
}

TEST_F(ActionSheetTest, theSheetStaysAtTheTopWhileTheViewGrows) {
    giveFeedOf(3);
    followsPreferredHeight = false;
    load();
    controller->view().setFrame(QRectF(0, 0, 320, 200));
    act(0, Action::Later(0));
    for (const double viewHeight : {210.0, 230.0, 245.0}) {
        controller->view().setFrame(QRectF(0, 0, 320, viewHeight));
        EXPECT_EQ(sheet().frame().topLeft(), QPointF(0, -10)) << viewHeight;
    }
}

TEST_F(ActionSheetTest, aViewThatGrowsAtOnceHasTheSheetAtTheSamePlace) {
    giveFeedOf(3);
    load();
    act(0, Action::Later(0));
    ASSERT_EQ(controller->view().bounds().height(), 245.0);
    EXPECT_EQ(sheet().frame(), QRectF(0, -10, 320, 245));
}

TEST_F(ActionSheetTest, theSheetIsAsWideAsTheView) {
    giveFeedOf(3);
    followsPreferredHeight = false;
    load();
    controller->view().setFrame(QRectF(0, 0, 411, 200));
    act(0, Action::Later(0));
    EXPECT_EQ(sheet().frame().x(), 0.0);
    EXPECT_EQ(sheet().frame().width(), 411.0);
}

// --- what an answer does, by the action that was asked about and the index

struct Answer {
    const char* name;
    Action asked;
    std::int64_t index;
    Action performed;
};

void PrintTo(const Answer& listed, std::ostream* stream) {
    *stream << listed.name;
}

class AnswerTest : public ActionSheetTest, public testing::WithParamInterface<Answer> {};

TEST_P(AnswerTest, isPerformedAsTheExchangeDoes) {
    giveSettings(0, 10);
    const std::vector<Occurrence> weekly = {
        {"A", tenthOfMarch, false}, {"B", tenthOfMarch + 60, false}, {"A", tenthOfMarch + 7 * day, false}};
    giveFeed(weekly);
    load();
    const Files expected = filesAfter(*transaction(0), GetParam().performed);
    act(0, GetParam().asked);
    controller->actionSheetClickedButtonAtIndex(GetParam().index);
    EXPECT_EQ(files(), expected);
    expectList();
    // The list has the transactions of the new file.
    std::vector<std::string> inFeed;
    for (const auto& each : TodayWidgetLogic::getTodayTransactionsArray())
        inFeed.push_back(each->name.toStdString());
    EXPECT_EQ(names(), inFeed);
    EXPECT_EQ(controller->currentTransaction, nullptr);
    EXPECT_EQ(controller->lastExpandedCell, nullptr);
    EXPECT_EQ(height(), 50.0 * static_cast<double>(inFeed.size() + 1));
    EXPECT_THAT(opened, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Choices, AnswerTest,
    testing::Values(Answer{"laterFirst", Action::Later(0), 1, Action::Later(1)},
                    Answer{"laterSecond", Action::Later(0), 2, Action::Later(3)},
                    Answer{"laterThird", Action::Later(0), 3, Action::Later(7)},
                    Answer{"laterFourthCountsAsTheThird", Action::Later(0), 4, Action::Later(7)},
                    Answer{"laterNegativeCountsAsTheThird", Action::Later(0), -1, Action::Later(7)},
                    Answer{"laterLosesWhatTheRowSent", Action::Later(42), 1, Action::Later(1)},
                    Answer{"deleteFirst", Action::Delete(false), 1, Action::Delete(true)},
                    Answer{"deleteSecond", Action::Delete(false), 2, Action::Delete(false)},
                    Answer{"deleteThird", Action::Delete(false), 3, Action::Delete(false)},
                    Answer{"deleteNinthCountsAsTheThird", Action::Delete(false), 9, Action::Delete(false)},
                    Answer{"deleteLosesWhatTheRowSent", Action::Delete(true), 2, Action::Delete(false)}),
    [](const auto& listed) { return listed.param.name; });

class NothingToChooseTest : public ActionSheetTest, public testing::WithParamInterface<std::int64_t> {};

// The widget never asks about these actions.
TEST_P(NothingToChooseTest, paidAndInfoPerformNothingAndReload) {
    for (const Action asked : {Action::Paid(), Action::Info()}) {
        giveFeedOf(2);
        load();
        act(0, Action::Later(0));
        controller->currentAction = asked;
        giveFeedOf(1);
        const Files before = files();
        controller->actionSheetClickedButtonAtIndex(GetParam());
        EXPECT_EQ(files(), before);
        EXPECT_THAT(opened, IsEmpty());
        EXPECT_THAT(names(), ElementsAre("A"));
        expectList();
    }
}

INSTANTIATE_TEST_SUITE_P(Indexes, NothingToChooseTest, testing::Values(1, 2, 3));

TEST_F(ActionSheetTest, cancelPerformsNothingAndKeepsListRowAndTransaction) {
    giveFeedOf(2);
    load();
    act(1, Action::Later(0));
    const auto rows = controller->cellArray;
    const TodayTransactionPtr current = transaction(1);
    giveFatalFeed();
    const Files before = files();
    controller->actionSheetClickedButtonAtIndex(0);
    expectList();
    EXPECT_EQ(files(), before);
    EXPECT_EQ(controller->cellArray, rows);
    EXPECT_EQ(controller->currentTransaction, current);
    EXPECT_EQ(controller->lastExpandedCell, rows[1]);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "[]"));
    EXPECT_EQ(height(), 150.0);
}

TEST_F(ActionSheetTest, hidingTakesTheSheetAwayAtOnce) {
    giveFeedOf(2);
    load();
    act(0, Action::Later(0));
    const auto old = controller->actionSheet;
    controller->actionSheetClickedButtonAtIndex(0);
    EXPECT_EQ(old->superview(), nullptr);
}

TEST_F(ActionSheetTest, afterCancelTheRowTakesTheNextAction) {
    giveFeedOf(2);
    load();
    act(0, Action::Later(0));
    controller->actionSheetClickedButtonAtIndex(0);
    act(0, Action::Paid());
    EXPECT_THAT(names(), ElementsAre("B"));
}

// After Paid the numbers are those from before it until the next refresh; hiding the sheet is one.
TEST_F(ActionSheetTest, hidingTheSheetRefreshesNumbersAndTable) {
    giveFeedOf(3);
    load();
    act(0, Action::Paid());
    act(0, Action::Later(0));
    ASSERT_EQ(transaction(0)->index, 1);
    const auto last = addRow();
    controller->actionSheetClickedButtonAtIndex(0);
    EXPECT_EQ(transaction(0)->index, 0);
    EXPECT_EQ(transaction(1)->index, 1);
    EXPECT_NE(addRow(), last) << "the table has asked for its rows again";
}

// --- a list that is taller than what it is shown in

class ScrolledSheetTest : public ActionSheetTest {
protected:
    void loadInto(double height) {
        giveFeedOf(9);
        load(Count::All());
        scroll.setDocumentView(&controller->view());
        scroll.setFrame(QRectF(0, 0, 320, height));
        scroll.setDocumentHeight(this->height());
        controller->setPreferredContentSizeChanged([this] { scroll.setDocumentHeight(this->height()); });
    }
    ~ScrolledSheetTest() override { scroll.setDocumentView(nullptr); }

    platform::ScrollView scroll;
};

TEST_F(ScrolledSheetTest, theSheetIsScrolledTo) {
    loadInto(200);
    scroll.scrollTo(300);
    act(8, Action::Later(0));
    EXPECT_EQ(scroll.offset(), 0);
}

TEST_F(ScrolledSheetTest, theListIsWhereItWasAfterTheSheet) {
    loadInto(200);
    scroll.scrollTo(220);
    act(8, Action::Later(0));
    controller->todayTableViewCellClickedAction(Action::Later(0)); // once more
    scroll.scrollTo(45);                                           // to its Cancel
    controller->actionSheetClickedButtonAtIndex(0);
    EXPECT_EQ(scroll.offset(), 220);
    act(8, Action::Later(0));
    giveFeedOf(6);
    controller->actionSheetClickedButtonAtIndex(1);
    EXPECT_EQ(scroll.offset(), height() - 200) << "as far as the list goes now";
}

TEST_F(ActionSheetTest, anAnswerWithoutACurrentActionIsIgnored) {
    giveFeedOf(2);
    load();
    act(0, Action::Later(0));
    controller->currentAction = std::nullopt;
    const Files before = files();
    for (const std::int64_t index : {0, 1, 2, 3})
        controller->actionSheetClickedButtonAtIndex(index);
    EXPECT_EQ(files(), before);
    EXPECT_NE(controller->actionSheet, nullptr);
    EXPECT_TRUE(table().isHidden());
}

TEST_F(ActionSheetTest, anAnswerWithoutACurrentTransactionIsIgnored) {
    giveFeedOf(2);
    load();
    act(0, Action::Later(0));
    controller->currentTransaction = nullptr;
    const Files before = files();
    for (const std::int64_t index : {0, 1, 2, 3})
        controller->actionSheetClickedButtonAtIndex(index);
    EXPECT_EQ(files(), before);
    EXPECT_NE(controller->actionSheet, nullptr);
    EXPECT_TRUE(table().isHidden());
    EXPECT_EQ(controller->currentAction, Action::Later(0));
}

// --- the sheet's own way of answering

TEST_F(ActionSheetTest, theAnswerComesHalfASecondAfterTheClick) {
    giveFeedOf(2);
    load();
    act(0, Action::Later(0));
    const auto asked = controller->actionSheet;
    const Files before = files();
    asked->checkButtonClick2();
    queue.advance(499ms);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(controller->actionSheet, asked);
    queue.advance(1ms);
    EXPECT_NE(files(), before);
    expectList();
    EXPECT_EQ(asked->delegate, nullptr);
}

TEST_F(ActionSheetTest, onlyTheFirstClickCounts) {
    giveFeedOf(2);
    load();
    const Files expected = filesAfter(*transaction(0), Action::Later(7));
    act(0, Action::Later(0));
    sheet().checkButtonClick3();
    sheet().checkButtonClick1();
    sheet().cancelButtonClick();
    queue.advance(2s);
    EXPECT_EQ(files(), expected);
}

TEST_F(ActionSheetTest, theSheetsCancelIsIndex0) {
    giveFeedOf(2);
    load();
    const Files before = files();
    act(0, Action::Later(0));
    sheet().cancelButtonClick();
    queue.advance(500ms);
    EXPECT_EQ(files(), before);
    expectList();
    EXPECT_NE(controller->currentTransaction, nullptr);
}

} // namespace
} // namespace controller

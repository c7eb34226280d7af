// Whole flows of the user with real input, a shown window and real files.
#include "controller/ControllerTest.h"

#include "exchange/TodayWidgetLogic.h"
#include "support/Application.h"
#include "support/Events.h"

#include <QCoreApplication>
#include <QTranslator>

#include <array>

namespace controller {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

enum Button { Paid, Later, Info, Delete };

class FlowTest : public ControllerTest {
protected:
    void show() {
        load();
        support::showWindow(controller->view(), 320, static_cast<int>(height()));
    }

    // Clicks the left half of a row, which its content covers even while the row is open.
    void clickRow(std::size_t number) {
        support::click(row(number), QPoint(20, 25));
        queue.advance(200ms);
    }

    void clickButton(std::size_t number, Button button) {
        auto* view = row(number).rightButtonsPanel->subviews().at(button);
        support::click(*view);
        support::settle();
    }

    void answer(platform::Button& button) {
        support::settle();
        support::click(button);
        queue.advance(500ms);
        support::settle();
    }

    // The names of the transactions that the exchange reads from the feed.
    [[nodiscard]] static std::vector<std::string> inFeed() {
        std::vector<std::string> result;
        for (const auto& each : TodayWidgetLogic::getTodayTransactionsArray())
            result.push_back(each->name.toStdString());
        return result;
    }
};

TEST_F(FlowTest, paid) {
    giveFeedOf(7);
    show();
    const Files expected = filesAfter(*transaction(1), Action::Paid());
    clickRow(1);
    EXPECT_TRUE(row(1).isExpanded());
    clickButton(1, Paid);
    EXPECT_EQ(files(), expected);
    EXPECT_THAT(shown(), ElementsAre("A", "C", "D", "E", "F", "[ShowAllTitle]"));
    queue.advance(300ms);
    EXPECT_THAT(shown(), ElementsAre("A", "C", "D", "E", "F", "[ShowAllTitle]"));
    EXPECT_EQ(names(), inFeed());
    EXPECT_EQ(height(), 300.0);
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(FlowTest, deleteOnASinglePlan) {
    giveFeedOf(3);
    show();
    const Files expected = filesAfter(*transaction(2), Action::Delete(false));
    clickRow(2);
    clickButton(2, Delete);
    EXPECT_EQ(files(), expected);
    queue.advance(300ms);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "[]"));
    EXPECT_EQ(names(), inFeed());
    EXPECT_EQ(height(), 150.0);
}

TEST_F(FlowTest, info) {
    giveFeedOf(3);
    show();
    const Files before = files();
    clickRow(0);
    clickButton(0, Info);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_edit_transaction"));
    EXPECT_EQ(*settings().find("edit_transaction_plan_pk"), plist::Value("plan of A"));
    EXPECT_EQ(files(), before);
    EXPECT_TRUE(row(0).isExpanded());
}

struct Choice {
    const char* name;
    int button;
    std::int64_t days;
};

class LaterFlowTest : public FlowTest, public testing::WithParamInterface<Choice> {};

TEST_P(LaterFlowTest, movesTheOccurrence) {
    giveSettings(0, 5); // up to 15 March
    giveFeedOf(2);
    show();
    const Files expected = filesAfter(*transaction(0), Action::Later(GetParam().days));
    clickRow(0);
    clickButton(0, Later);
    EXPECT_EQ(height(), 245.0);
    answer(*std::array{&sheet().checkButton1, &sheet().checkButton2,
                       &sheet().checkButton3}[static_cast<std::size_t>(GetParam().button)]
                ->get());
    EXPECT_EQ(files(), expected);
    EXPECT_EQ(names(), inFeed());
    // A week from now is beyond the limit of days.
    EXPECT_EQ(names(),
              GetParam().days < 6 ? (std::vector<std::string>{"B", "A"}) : (std::vector<std::string>{"B"}));
    EXPECT_EQ(controller->actionSheet, nullptr);
    EXPECT_FALSE(table().isHidden());
    EXPECT_EQ(height(), 50.0 * static_cast<double>(names().size() + 1));
}

INSTANTIATE_TEST_SUITE_P(Choices, LaterFlowTest,
                         testing::Values(Choice{"tomorrow", 0, 1}, Choice{"inThreeDays", 1, 3},
                                         Choice{"inAWeek", 2, 7}),
                         [](const auto& listed) { return listed.param.name; });

TEST_F(FlowTest, laterAndCancel) {
    giveFeedOf(2);
    show();
    const Files before = files();
    const auto rows = controller->cellArray;
    clickRow(0);
    clickButton(0, Later);
    answer(*sheet().theCancelButton);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(controller->cellArray, rows);
    EXPECT_EQ(controller->actionSheet, nullptr);
    EXPECT_FALSE(row(0).isExpanded());
    EXPECT_THAT(shown(), ElementsAre("A", "B", "[]"));
    EXPECT_EQ(height(), 150.0);
}

class RepeatingFlowTest : public FlowTest {
protected:
    RepeatingFlowTest() {
        giveSettings(0, 15);
        giveFeed(
            {{"A", tenthOfMarch, false}, {"B", tenthOfMarch + day}, {"A", tenthOfMarch + 7 * day, false}});
        show();
    }
};

TEST_F(RepeatingFlowTest, deleteWithTheFutureOnes) {
    const Files expected = filesAfter(*transaction(0), Action::Delete(true));
    clickRow(0);
    clickButton(0, Delete);
    answer(*sheet().checkButton1);
    EXPECT_EQ(files(), expected);
    EXPECT_THAT(shown(), ElementsAre("B", "[]"));
}

TEST_F(RepeatingFlowTest, deleteTheOneOnly) {
    const Files expected = filesAfter(*transaction(0), Action::Delete(false));
    clickRow(0);
    clickButton(0, Delete);
    answer(*sheet().checkButton2);
    EXPECT_EQ(files(), expected);
    EXPECT_THAT(shown(), ElementsAre("B", "A", "[]"));
}

TEST_F(RepeatingFlowTest, deleteAndCancel) {
    const Files before = files();
    clickRow(0);
    clickButton(0, Delete);
    answer(*sheet().theCancelButton);
    EXPECT_EQ(files(), before);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "A", "[]"));
}

TEST_F(FlowTest, addButton) {
    giveFeedOf(1);
    show();
    const auto last = addRow();
    support::click(*last->addButton);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_new_transaction"));
}

TEST_F(FlowTest, lastRow) {
    giveFeedOf(6);
    show();
    const auto last = addRow();
    support::click(*last, QPoint(250, 25));
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_all_transactions"));
}

TEST_F(FlowTest, severalActionsInOneLoad) {
    giveFeedOf(5);
    show();
    clickRow(0);
    clickButton(0, Paid);
    queue.advance(300ms);
    support::settle();
    clickRow(1); // C
    clickButton(1, Later);
    answer(*sheet().checkButton3);
    clickRow(1); // D
    clickButton(1, Delete);
    queue.advance(300ms);
    EXPECT_THAT(shown(), ElementsAre("B", "E", "[]"));
    EXPECT_EQ(names(), inFeed());
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(FlowTest, aClickOnAButtonOfARowThatStartsToCloseActsOnNothing) {
    giveFeedOf(3);
    show();
    const Files before = files();
    clickRow(0);
    support::click(row(2), QPoint(20, 25));
    for (int elapsed = 0; elapsed < 150; elapsed += 30) {
        support::click(*row(0).rightButtonsPanel->subviews().at(Delete));
        queue.advance(30ms);
    }
    EXPECT_EQ(files(), before);
    EXPECT_TRUE(row(2).isExpanded());
    EXPECT_EQ(controller->currentTransaction, transaction(2));
    queue.advance(1s);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C", "[]"));
}

// The refresh replaces the last row's view under the hand.
TEST_F(FlowTest, aPressOnTheAddButtonThatARefreshReplacesIsAClick) {
    giveFeedOf(3);
    show();
    clickRow(0);
    clickButton(0, Paid);
    queue.advance(250ms);
    const auto last = addRow();
    const QPoint place = last->addButton->mapTo(&controller->view(), QPoint(25, 25));
    support::press(controller->view(), place);
    queue.advance(50ms);
    EXPECT_NE(addRow(), last);
    support::settle();
    support::release(controller->view(), place);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_new_transaction"));
}

// The sheet asks about the transaction of the row that opened it, whatever is released behind it.
TEST_F(FlowTest, aRowThatIsHeldWhenASheetComesIsNotOpened) {
    giveFeedOf(3);
    show();
    clickRow(0);
    support::press(row(2), QPoint(20, 25));
    controller->cellArray[0]->rightButtonsPanel->buttonLaterClick(); // by a key, say
    support::release(row(2), QPoint(20, 25));
    EXPECT_FALSE(row(2).isExpanded());
    EXPECT_EQ(row(2).cellContentView->alphaValue(), 1);
    EXPECT_EQ(controller->currentTransaction, transaction(0));
    answer(*sheet().theCancelButton);
}

struct Repeated {
    const char* name;
    Button button;
    std::vector<std::string> left; // of two transactions
};

class RepeatedClicksTest : public FlowTest, public testing::WithParamInterface<Repeated> {};

// At a pace at which the slide is over and the sheet or the next row is there before the next click.
TEST_P(RepeatedClicksTest, actOnce) {
    giveFeedOf(2);
    show();
    clickRow(0);
    const QPoint place = row(0)
                             .rightButtonsPanel->subviews()
                             .at(GetParam().button)
                             ->mapTo(&controller->view(), QPoint(25, 25));
    support::click(controller->view(), place);
    for (int i = 0; i < 4; ++i) {
        queue.advance(250ms);
        support::settle();
        support::clickAfter(250ms, controller->view(), place);
    }
    queue.advance(2s);
    EXPECT_EQ(names(), GetParam().left);
    EXPECT_EQ(inFeed(), GetParam().left);
    for (const auto& each : controller->cellArray)
        EXPECT_FALSE(each->isExpanded());
}

INSTANTIATE_TEST_SUITE_P(Buttons, RepeatedClicksTest,
                         testing::Values(Repeated{"paid", Paid, {"B"}}, Repeated{"later", Later, {"A", "B"}},
                                         Repeated{"deleting", Delete, {"B"}}),
                         [](const auto& listed) { return listed.param.name; });

// A row receives no press while it is removed, so that a double click on Paid pays once.
TEST_F(FlowTest, aDoubleClickOnPaidPaysOnce) {
    giveFeedOf(3);
    show();
    const Files expected = filesAfter(*transaction(0), Action::Paid());
    clickRow(0);
    const auto cell = controller->cellArray[0];
    support::doubleClick(*cell->rightButtonsPanel->subviews().at(Paid), QPoint(25, 25));
    queue.advance(1s);
    EXPECT_EQ(files(), expected);
    EXPECT_THAT(shown(), ElementsAre("B", "C", "[]"));
    EXPECT_FALSE(row(0).isExpanded());
}

TEST_F(FlowTest, textsAreThoseOfTheLanguageInForce) {
    QTranslator english;
    ASSERT_TRUE(english.load(QStringLiteral(":/translations/korvel-today_en.qm")));
    QCoreApplication::installTranslator(&english);
    giveFeedOf(0);
    load();
    std::vector<QString> texts{addRow()->titleLabel->stringValue()};
    giveFeedOf(6, false);
    load();
    texts.push_back(addRow()->titleLabel->stringValue());
    act(0, Action::Later(0));
    for (auto* button : {sheet().checkButton1.get(), sheet().checkButton2.get(), sheet().checkButton3.get()})
        texts.push_back(button->attributedTitle().text);
    act(0, Action::Delete(false));
    for (auto* button : {sheet().checkButton1.get(), sheet().checkButton2.get()})
        texts.push_back(button->attributedTitle().text);
    std::size_t number = 0;
    for (const char* key : {"TodayViewEmtyText", "ShowAllTitle", "ResheduleTomorrow", "Reshedule3Days",
                            "ResheduleNextWeek", "DeleteFutureEnteres", "DeleteCurrentPlanButtonTitle"}) {
        const QString& text = texts.at(number++);
        EXPECT_EQ(text, qtTrId(key));
        EXPECT_NE(text, QLatin1String(key));
    }
    QCoreApplication::removeTranslator(&english);
}

} // namespace
} // namespace controller

// Which row is open, and the transaction that the controller keeps from it.
#include "controller/ControllerTest.h"

namespace controller {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class OpenRowTest : public ControllerTest {
protected:
    OpenRowTest() {
        giveFeedOf(3);
        load();
    }
};

TEST_F(OpenRowTest, anOpeningRowAndItsTransactionAreTheCurrentOnes) {
    row(1).cellClicked();
    EXPECT_EQ(controller->lastExpandedCell, controller->cellArray[1]);
    EXPECT_EQ(controller->currentTransaction, transaction(1));
}

TEST_F(OpenRowTest, openingASecondRowCollapsesTheFirst) {
    row(0).cellClicked();
    queue.advance(200ms);
    row(2).cellClicked();
    EXPECT_FALSE(row(0).isExpanded());
    EXPECT_TRUE(row(2).isExpanded());
    EXPECT_EQ(controller->lastExpandedCell, controller->cellArray[2]);
    EXPECT_EQ(controller->currentTransaction, transaction(2));
    queue.advance(200ms);
    EXPECT_EQ(row(0).cellContentViewRightSpaceConstraint->constant(), 0.0);
    EXPECT_LT(row(2).cellContentViewRightSpaceConstraint->constant(), 0.0);
}

TEST_F(OpenRowTest, theSameRowAgainChangesNothing) {
    row(0).cellClicked();
    controller->currentTransaction = transaction(2);
    controller->todayTableViewCellWillExpanded(row(0));
    EXPECT_EQ(controller->currentTransaction, transaction(2));
    EXPECT_EQ(controller->lastExpandedCell, controller->cellArray[0]);
    EXPECT_TRUE(row(0).isExpanded());
}

TEST_F(OpenRowTest, aRowThatWasClosedByHandIsStillTheCurrentOne) {
    row(0).cellClicked();
    row(0).cellClicked();
    EXPECT_FALSE(row(0).isExpanded());
    EXPECT_EQ(controller->lastExpandedCell, controller->cellArray[0]);
    EXPECT_EQ(controller->currentTransaction, transaction(0));
    row(1).cellClicked();
    EXPECT_FALSE(row(0).isExpanded());
    EXPECT_EQ(controller->currentTransaction, transaction(1));
}

TEST_F(OpenRowTest, openingARowChangesNeitherListNorHeight) {
    const double before = height();
    row(0).cellClicked();
    queue.advance(200ms);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C", "[]"));
    EXPECT_EQ(height(), before);
    EXPECT_TRUE(queue.isIdle());
}

class NoCurrentTransactionTest : public OpenRowTest, public testing::WithParamInterface<Action> {};

TEST_P(NoCurrentTransactionTest, anActionIsIgnored) {
    const Files before = files();
    controller->setExtensionContext(nullptr);
    controller->todayTableViewCellClickedAction(GetParam());
    EXPECT_EQ(files(), before);
    EXPECT_THAT(opened, IsEmpty());
    EXPECT_EQ(controller->actionSheet, nullptr);
    EXPECT_EQ(controller->currentAction, std::nullopt);
    EXPECT_FALSE(table().isHidden());
    EXPECT_THAT(names(), ElementsAre("A", "B", "C"));
    EXPECT_TRUE(queue.isIdle());
}

INSTANTIATE_TEST_SUITE_P(
    Actions, NoCurrentTransactionTest,
    testing::Values(Action::Paid(), Action::Later(0), Action::Info(), Action::Delete(false)),
    [](const auto& listed) {
        const Action action = listed.param;
        return action.isPaid() ? "paid" : action.isInfo() ? "info" : action.isLater() ? "later" : "deleting";
    });

// --- Info

TEST_F(OpenRowTest, infoChangesNothingInTheWidget) {
    const Files before = files();
    act(1, Action::Info());
    queue.advance(1s);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_edit_transaction"));
    EXPECT_EQ(files(), before);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C", "[]"));
    EXPECT_TRUE(row(1).isExpanded());
    EXPECT_EQ(controller->lastExpandedCell, controller->cellArray[1]);
    EXPECT_EQ(controller->currentTransaction, transaction(1));
    EXPECT_EQ(controller->currentAction, std::nullopt);
    EXPECT_EQ(controller->actionSheet, nullptr);
    EXPECT_EQ(height(), 200.0);
}

TEST_F(OpenRowTest, infoNamesTheTransactionInTheSettings) {
    act(1, Action::Info());
    EXPECT_EQ(*settings().find("edit_transaction_plan_pk"), plist::Value("plan of B"));
    EXPECT_EQ(*settings().find("edit_transaction_date"), plist::Value(tenthOfMarch + 60));
    EXPECT_EQ(*settings().find("url_string"), plist::Value("tw_edit_transaction"));
}

} // namespace
} // namespace controller

#include "controller/ControllerTest.h"

#include "support/Application.h"

namespace controller {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LastRowTest : public ControllerTest {};

TEST_F(LastRowTest, theAddButtonAsksTheHostForANewTransaction) {
    giveFeedOf(2);
    load();
    const Files before = files();
    addRow()->addButtonClick();
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_new_transaction"));
    EXPECT_EQ(*settings().find("url_string"), plist::Value("tw_new_transaction"));
    EXPECT_EQ(files(), before);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "[]"));
    EXPECT_TRUE(queue.isIdle());
}

class AddButtonTest : public LastRowTest, public testing::WithParamInterface<Count> {};

TEST_P(AddButtonTest, worksWhateverTheCount) {
    load(GetParam());
    controller->todayAddTableViewCellClickAddButton();
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_new_transaction"));
}

INSTANTIATE_TEST_SUITE_P(Counts, AddButtonTest,
                         testing::Values(Count::Custom(3), Count::None(), Count::All()),
                         [](const auto& listed) {
                             return listed.param.isCustom() ? "custom"
                                    : listed.param.isNone() ? "none"
                                                            : "all";
                         });

TEST_F(LastRowTest, aClickUnderCustomShowsAllInTheHost) {
    giveFeedOf(6);
    load();
    controller->todayAddTableViewCellClickContentCell();
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_all_transactions"));
    EXPECT_EQ(*settings().find("url_string"), plist::Value("tw_all_transactions"));
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C", "D", "E", "[ShowAllTitle]"));
    EXPECT_EQ(controller->trCount, Count::Custom(5));
}

TEST_F(LastRowTest, aClickUnderCustomDoesSoAlsoWithAnEmptyCaption) {
    giveFeedOf(2);
    load();
    ASSERT_TRUE(addRow()->titleLabel->stringValue().isEmpty());
    controller->todayAddTableViewCellClickContentCell();
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_all_transactions"));
}

TEST_F(LastRowTest, anEmptyCaptionDoesNotKeepFromAssistiveProgramsWhatAClickDoes) {
    giveFeedOf(2);
    load();
    EXPECT_EQ(addRow()->accessibleName(), QStringLiteral("ShowAllTitle"));
    load(Count::None()); // where a click does nothing
    EXPECT_EQ(addRow()->accessibleName(), QString());
}

TEST_F(LastRowTest, aClickUnderCustomDoesSoAlsoWithAnEmptyList) {
    load();
    controller->todayAddTableViewCellClickContentCell();
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_all_transactions"));
}

TEST_F(LastRowTest, aClickUnderAllDoesNothing) {
    giveFeedOf(2);
    load(Count::All());
    controller->todayAddTableViewCellClickContentCell();
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(LastRowTest, aClickUnderNoneDoesNothing) {
    giveSettings(-1, 0);
    load();
    controller->todayAddTableViewCellClickContentCell();
    EXPECT_THAT(opened, IsEmpty());
}

// --- showing all

TEST_F(LastRowTest, showingAllShowsEveryPreparedRow) {
    giveFeedOf(7);
    load();
    ASSERT_THAT(shown(), ElementsAre("A", "B", "C", "D", "E", "[ShowAllTitle]"));
    support::showWindow(controller->view(), 320, 300); // resized when it shows only
    const auto rows = controller->cellArray;
    controller->showAllTransactions(0);
    support::settle();
    EXPECT_EQ(controller->trCount, Count::All());
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C", "D", "E", "F", "G", "[]"));
    EXPECT_EQ(height(), 400.0);
    EXPECT_EQ(controller->cellArray, rows);
}

TEST_F(LastRowTest, showingAllIgnoresItsArgument) {
    giveFeedOf(7);
    load();
    controller->showAllTransactions(-1);
    EXPECT_EQ(controller->trCount, Count::All());
    EXPECT_EQ(height(), 400.0);
}

TEST_F(LastRowTest, showingAllNumbersNothing) {
    giveFeedOf(7);
    load();
    for (const auto& each : controller->transactionsArray)
        each->index = 99;
    controller->showAllTransactions(0);
    for (const auto& each : controller->transactionsArray)
        EXPECT_EQ(each->index, 99);
}

TEST_F(LastRowTest, showingAllFillsTheTableBeforeItMeasures) {
    giveFeedOf(7);
    load();
    std::vector<std::int64_t> rows;
    controller->setPreferredContentSizeChanged([&] { rows.push_back(table().numberOfRows()); });
    controller->showAllTransactions(0);
    EXPECT_THAT(rows, ElementsAre(8));
}

TEST_F(LastRowTest, showingAllLastsUntilTheNextViewLoad) {
    giveSettings(2, 0);
    giveFeedOf(7);
    load();
    const auto before = settings();
    controller->showAllTransactions(0);
    EXPECT_EQ(settings(), before);
    controller->loadData();
    EXPECT_EQ(table().numberOfRows(), 8);
    load();
    EXPECT_EQ(controller->trCount, Count::Custom(5));
    EXPECT_EQ(table().numberOfRows(), 6);
}

} // namespace
} // namespace controller

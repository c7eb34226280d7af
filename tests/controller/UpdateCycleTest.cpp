#include "controller/ControllerTest.h"

#include "model/GroupIdentifiers.h"
#include "platform/views/InterfaceFile.h"
#include "support/Application.h"
#include "support/InterfaceFileOverride.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace controller {
namespace {

using platform::UpdateResult;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class UpdateCycleTest : public ControllerTest {
protected:
    [[nodiscard]] std::vector<UpdateResult> answers() const {
        std::vector<UpdateResult> answers;
        controller->widgetPerformUpdateWithCompletionHandler(
            [&](UpdateResult result) { answers.push_back(result); });
        return answers;
    }

    void writeFreeSettings(const std::string& text) const {
        const std::filesystem::path preferences =
            std::filesystem::path(scratch) / freeEditionGroupIdentifier / "Library/Preferences";
        std::filesystem::create_directories(preferences);
        std::ofstream(preferences / (std::string(freeEditionGroupIdentifier) + ".plist")) << text;
    }
};

// --- a controller's fields before its view is loaded

class InitialValueTest : public testing::Test {
protected:
    TodayViewController controller;
};

TEST_F(InitialValueTest, sharedDataGroupIsTheFreeEditions) {
    EXPECT_EQ(controller.sharedDataGroup.toStdString(), freeEditionGroupIdentifier);
    EXPECT_EQ(controller.sharedDataGroup.size(), 46);
    EXPECT_NE(controller.sharedDataGroup.toStdString(), fullEditionGroupIdentifier);
}

TEST_F(InitialValueTest, cellHeightIs50) {
    EXPECT_EQ(controller.cellHeight, 50.0);
}

TEST_F(InitialValueTest, transactionRowsAreRegisteredAsTransactionCell) {
    EXPECT_EQ(controller.tableViewTransactionReuseIdentifier, QStringLiteral("transactionCell"));
}

TEST_F(InitialValueTest, addRowIsRegisteredAsAddCell) {
    EXPECT_EQ(controller.tableViewAddReuseIdentifier, QStringLiteral("addCell"));
}

TEST_F(InitialValueTest, transactionsArrayIsEmpty) {
    EXPECT_TRUE(controller.transactionsArray.empty());
}

TEST_F(InitialValueTest, noRowIsExpanded) {
    EXPECT_EQ(controller.lastExpandedCell, nullptr);
}

TEST_F(InitialValueTest, thereIsNoSheet) {
    EXPECT_EQ(controller.actionSheet, nullptr);
}

TEST_F(InitialValueTest, maxSumLengthIs50) {
    EXPECT_EQ(controller.maxSumLength, 50.0);
}

TEST_F(InitialValueTest, thereIsNoCurrentTransaction) {
    EXPECT_EQ(controller.currentTransaction, nullptr);
}

TEST_F(InitialValueTest, thereIsNoCurrentAction) {
    EXPECT_EQ(controller.currentAction, std::nullopt);
}

TEST_F(InitialValueTest, trCountIsCustom3) {
    EXPECT_EQ(controller.trCount, Count::Custom(3));
}

TEST_F(InitialValueTest, cellArrayIsEmpty) {
    EXPECT_TRUE(controller.cellArray.empty());
}

TEST_F(InitialValueTest, tableIsNotConnected) {
    EXPECT_EQ(controller.mainTableView.get(), nullptr);
    EXPECT_FALSE(controller.isViewLoaded());
}

TEST_F(InitialValueTest, nibIsTodayViewController) {
    EXPECT_EQ(controller.nibName(), QStringLiteral("TodayViewController"));
}

TEST_F(InitialValueTest, preferredSizeIsZero) {
    EXPECT_EQ(controller.preferredContentSize(), QSizeF(0, 0));
}

// --- the view load

TEST_F(UpdateCycleTest, theCountComesFromTheSettings) {
    load();
    EXPECT_EQ(controller->trCount, Count::Custom(5));
    giveSettings(-1, 0);
    load();
    EXPECT_EQ(controller->trCount, Count::None());
}

TEST_F(UpdateCycleTest, viewLoadRegistersEachKindOfRowUnderItsIdentifier) {
    load();
    const auto made = [this](const char* identifier) {
        return table().makeViewWithIdentifier(QLatin1String(identifier));
    };
    EXPECT_NE(std::dynamic_pointer_cast<TodayTableCellView>(made("transactionCell")), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<TodayAddTableCellView>(made("addCell")), nullptr);
    for (const char* name : {"TodayTableCellView", "TodayAddTableCellView", ""})
        EXPECT_EQ(made(name), nullptr) << name;
}

TEST_F(UpdateCycleTest, viewLoadForgetsTheCurrentTransaction) {
    const auto fresh = std::make_shared<TodayViewController>();
    fresh->currentTransaction =
        std::make_shared<TodayTransaction>(exchange::transactionOf("plan", tenthOfMarch));
    (void)fresh->view();
    EXPECT_EQ(fresh->currentTransaction, nullptr);
    fresh->releaseViews();
}

TEST_F(UpdateCycleTest, tableShowsWhatIsBehindIt) {
    const support::InterfaceFileOverride red(QStringLiteral("TodayViewController"), [] {
        auto view = platform::makeView<platform::View>();
        auto* inside = new platform::TableView(view.get());
        inside->setObjectName(QStringLiteral("mainTableView"));
        inside->setBackgroundColor(Qt::red);
        return platform::InterfaceFile::TopLevelObjects{view};
    });
    load();
    EXPECT_EQ(table().backgroundColor(), QColor(Qt::transparent));
}

TEST_F(UpdateCycleTest, viewIsLoadedOnce) {
    giveFeedOf(2);
    load();
    const auto rows = controller->cellArray;
    giveFeedOf(1);
    (void)controller->view();
    EXPECT_EQ(controller->cellArray, rows);
}

TEST_F(UpdateCycleTest, rowsAreMadeForTheWholeFeedInItsOrder) {
    giveFeedOf(10);
    load(Count::Custom(3));
    EXPECT_THAT(names(), ElementsAre("A", "B", "C", "D", "E", "F", "G", "H", "I", "J"));
    ASSERT_THAT(controller->cellArray, SizeIs(10));
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(row(i).item, transaction(i)) << i;
        EXPECT_EQ(row(i).delegate, std::shared_ptr<TodayTableViewCellDelegate>(controller)) << i;
        EXPECT_EQ(row(i).titleLabel->stringValue(), transaction(i)->name) << i;
    }
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C", "[ShowAllTitle]"));
}

TEST_F(UpdateCycleTest, loadNumbersTheTransactions) {
    giveFeedOf(4);
    load();
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(transaction(i)->index, static_cast<std::int64_t>(i));
}

// --- None

TEST_F(UpdateCycleTest, withNoneTheFeedIsNotEvenOpened) {
    giveSettings(-1, 0);
    giveFatalFeed();
    load();
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(controller->cellArray, IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("[]"));
    EXPECT_EQ(height(), 50.0);
}

// The test before this one depends on this.
TEST_F(UpdateCycleTest, theFeedThatNoneLeavesAloneIsFatalOtherwise) {
    giveSettings(0, 0);
    giveFatalFeed();
    EXPECT_FATAL(load());
}

TEST_F(UpdateCycleTest, withNoneTheWidthOfTheAmountsStays) {
    giveFeedOf(2);
    load();
    controller->maxSumLength = 77;
    controller->trCount = Count::None();
    controller->loadData();
    EXPECT_EQ(controller->maxSumLength, 77.0);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(controller->cellArray, IsEmpty());
}

// --- loading again

TEST_F(UpdateCycleTest, loadingAgainReadsTheFeedAnewAndMakesAllRowsAnew) {
    giveFeedOf(2);
    load();
    const auto before = controller->cellArray;
    giveFeedOf(3);
    controller->loadData();
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C", "[]"));
    EXPECT_EQ(height(), 200.0);
    for (const auto& now : controller->cellArray)
        EXPECT_THAT(before, testing::Not(testing::Contains(now)));
}

TEST_F(UpdateCycleTest, loadingForgetsWhatAnOpenSheetIsAbout) {
    giveFeedOf(2);
    load();
    act(0, Action::Later(0));
    ASSERT_TRUE(controller->actionSheet && controller->currentTransaction && controller->currentAction &&
                controller->lastExpandedCell);
    controller->loadData();
    EXPECT_EQ(controller->currentTransaction, nullptr);
    EXPECT_EQ(controller->currentAction, std::nullopt);
    EXPECT_EQ(controller->lastExpandedCell, nullptr);
    EXPECT_NE(controller->actionSheet, nullptr);
    EXPECT_TRUE(table().isHidden());
}

TEST_F(UpdateCycleTest, loadingDoesNotReadTheCountAgain) {
    giveFeedOf(2);
    load(Count::Custom(1));
    controller->loadData();
    EXPECT_EQ(controller->trCount, Count::Custom(1));
    EXPECT_THAT(shown(), ElementsAre("A", "[ShowAllTitle]"));
}

TEST_F(UpdateCycleTest, reloadingNumbersThenMeasuresThenFillsTheTable) {
    giveFeedOf(3);
    load(Count::All());
    controller->transactionsArray.pop_back();
    controller->cellArray.pop_back();
    std::swap(controller->transactionsArray[0], controller->transactionsArray[1]);
    std::vector<std::int64_t> seen;
    controller->setPreferredContentSizeChanged([&] {
        for (const auto& each : controller->transactionsArray)
            seen.push_back(each->index);
        seen.push_back(table().numberOfRows());
    });
    controller->reloadData();
    EXPECT_THAT(seen, ElementsAre(0, 1, 4));
    EXPECT_EQ(table().numberOfRows(), 3);
}

// --- the update answer

TEST_F(UpdateCycleTest, twoUpdatesAnswerNewDataAndLeaveTheRowsUntouched) {
    giveFeedOf(2);
    load();
    const auto rows = controller->cellArray;
    const auto last = addRow();
    row(0).cellClicked();
    giveFatalFeed();
    giveSettings(-1, 0);
    EXPECT_THAT(answers(), ElementsAre(UpdateResult::NewData));
    EXPECT_THAT(answers(), ElementsAre(UpdateResult::NewData));
    EXPECT_EQ(controller->cellArray, rows);
    EXPECT_EQ(addRow(), last);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "[]"));
    EXPECT_EQ(controller->lastExpandedCell, rows[0]);
    EXPECT_TRUE(row(0).isExpanded());
    EXPECT_EQ(height(), 150.0);
    EXPECT_EQ(controller->trCount, Count::Custom(5));
}

TEST_F(UpdateCycleTest, aGroupWithoutAContainerAnswersNewData) {
    load();
    ASSERT_FALSE(std::filesystem::exists(std::filesystem::path(scratch) / freeEditionGroupIdentifier));
    EXPECT_THAT(answers(), ElementsAre(UpdateResult::NewData));
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(scratch) / freeEditionGroupIdentifier));
}

TEST_F(UpdateCycleTest, readableSettingsAnswerNewData) {
    writeFreeSettings("<plist><dict><key>any</key><integer>1</integer></dict></plist>");
    load();
    EXPECT_THAT(answers(), ElementsAre(UpdateResult::NewData));
}

TEST_F(UpdateCycleTest, settingsThatAreGarbageAnswerFailed) {
    giveFeedOf(2);
    load();
    writeFreeSettings("<plist><dict><key>broken");
    EXPECT_THAT(answers(), ElementsAre(UpdateResult::Failed));
    EXPECT_THAT(shown(), ElementsAre("A", "B", "[]"));
}

TEST_F(UpdateCycleTest, settingsWithAnotherRootAnswerFailed) {
    load();
    writeFreeSettings("<plist><array/></plist>");
    EXPECT_THAT(answers(), ElementsAre(UpdateResult::Failed));
}

// The update opens the settings of another group than the list uses, on purpose.
TEST_F(UpdateCycleTest, garbageInTheFullEditionsSettingsAnswersNewData) {
    load();
    breakSettings();
    EXPECT_THAT(answers(), ElementsAre(UpdateResult::NewData));
}

TEST_F(UpdateCycleTest, anUpdateNeedsNoView) {
    controller = std::make_shared<TodayViewController>();
    EXPECT_THAT(answers(), ElementsAre(UpdateResult::NewData));
    EXPECT_FALSE(controller->isViewLoaded());
}

TEST_F(UpdateCycleTest, anUpdateWithoutAHandlerIsFatal) {
    load();
    EXPECT_FATAL(controller->widgetPerformUpdateWithCompletionHandler({}));
}

} // namespace
} // namespace controller

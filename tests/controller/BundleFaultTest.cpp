// Faults of the program's own resources, all of which are fatal.
#include "controller/ControllerTest.h"

#include "platform/views/InterfaceFile.h"
#include "support/InterfaceFileOverride.h"

namespace controller {
namespace {

using platform::InterfaceFile;
using support::InterfaceFileOverride;

class BundleFaultTest : public ControllerTest {
protected:
    BundleFaultTest() { giveFeedOf(1); }

    // Loads the view with another interface file of that name.
    void loadWith(const char* name, const InterfaceFile::Maker& maker) {
        const InterfaceFileOverride fault(QString::fromLatin1(name), maker);
        load();
    }
};

InterfaceFile::TopLevelObjects plainView() {
    return {platform::makeView<platform::View>()};
}

InterfaceFile::TopLevelObjects nothing() {
    return {};
}

TEST_F(BundleFaultTest, noInterfaceFileOfTheController) {
    EXPECT_FATAL(loadWith("TodayViewController", {}));
}

TEST_F(BundleFaultTest, anEmptyInterfaceFileOfTheController) {
    EXPECT_FATAL(loadWith("TodayViewController", nothing));
}

TEST_F(BundleFaultTest, noTableInTheControllersView) {
    EXPECT_FATAL(loadWith("TodayViewController", plainView));
}

TEST_F(BundleFaultTest, noInterfaceFileOfTheTransactionRow) {
    EXPECT_FATAL(loadWith("TodayTableCellView", {}));
}

TEST_F(BundleFaultTest, noInterfaceFileOfTheTransactionRowEvenForAnEmptyList) {
    giveFeedOf(0);
    EXPECT_FATAL(loadWith("TodayTableCellView", {}));
}

TEST_F(BundleFaultTest, noInterfaceFileOfTheAddRow) {
    EXPECT_FATAL(loadWith("TodayAddTableCellView", {}));
}

TEST_F(BundleFaultTest, aTransactionRowOfAnotherClass) {
    EXPECT_FATAL(loadWith("TodayTableCellView", plainView));
}

TEST_F(BundleFaultTest, anEmptyInterfaceFileOfTheTransactionRow) {
    EXPECT_FATAL(loadWith("TodayTableCellView", nothing));
}

TEST_F(BundleFaultTest, anAddRowOfAnotherClass) {
    EXPECT_FATAL(loadWith("TodayAddTableCellView", plainView));
}

TEST_F(BundleFaultTest, anEmptyInterfaceFileOfTheAddRow) {
    EXPECT_FATAL(loadWith("TodayAddTableCellView", nothing));
}

// A row of another class is not a fault if it is not needed.
TEST_F(BundleFaultTest, aTransactionRowOfAnotherClassIsNotSeenByAnEmptyList) {
    giveFeedOf(0);
    loadWith("TodayTableCellView", plainView);
    EXPECT_EQ(table().numberOfRows(), 1);
}

TEST_F(BundleFaultTest, noInterfaceFileOfTheSheet) {
    load();
    const InterfaceFileOverride fault(QStringLiteral("TodayActionSheetView"), {});
    EXPECT_FATAL(act(0, Action::Later(0)));
}

TEST_F(BundleFaultTest, noSheetInItsInterfaceFile) {
    load();
    const InterfaceFileOverride fault(QStringLiteral("TodayActionSheetView"), plainView);
    EXPECT_FATAL(act(0, Action::Later(0)));
}

TEST_F(BundleFaultTest, theSheetIsTheFirstOfItsClassInTheInterfaceFile) {
    load();
    const auto whole = InterfaceFile::named(QStringLiteral("TodayActionSheetView"));
    ASSERT_TRUE(whole);
    std::shared_ptr<platform::View> first;
    const InterfaceFileOverride crowded(QStringLiteral("TodayActionSheetView"), [&] {
        first = whole->instantiate().front();
        return InterfaceFile::TopLevelObjects{platform::makeView<platform::View>(), first,
                                              whole->instantiate().front()};
    });
    act(0, Action::Later(0));
    EXPECT_EQ(controller->actionSheet, first);
}

// A table that is destroyed before the controller.
class MissingTableTest : public ControllerTest {
protected:
    MissingTableTest() {
        giveFeedOf(1);
        load();
    }

    void loseTable() const { controller->mainTableView = nullptr; }
};

TEST_F(MissingTableTest, loading) {
    EXPECT_FATAL((loseTable(), controller->loadData()));
}

TEST_F(MissingTableTest, reloading) {
    EXPECT_FATAL((loseTable(), controller->reloadData()));
}

TEST_F(MissingTableTest, measuring) {
    EXPECT_FATAL((loseTable(), controller->configureWidgetHeight()));
}

TEST_F(MissingTableTest, askingWithASheet) {
    controller->todayTableViewCellWillExpanded(row(0));
    EXPECT_FATAL((loseTable(), controller->todayTableViewCellClickedAction(Action::Later(0))));
}

TEST_F(MissingTableTest, cancellingASheet) {
    act(0, Action::Later(0));
    EXPECT_FATAL((loseTable(), controller->actionSheetClickedButtonAtIndex(0)));
}

TEST_F(MissingTableTest, removing) {
    EXPECT_FATAL((loseTable(), controller->removeTransactionFromArrayAndFromTable(transaction(0))));
}

TEST_F(MissingTableTest, refreshingAfterARemoval) {
    act(0, Action::Paid());
    EXPECT_FATAL((loseTable(), queue.advance(std::chrono::milliseconds(300))));
}

TEST_F(MissingTableTest, showingAll) {
    EXPECT_FATAL((loseTable(), controller->showAllTransactions(0)));
}

// Requests to the host application need a context.
class MissingContextTest : public ControllerTest {
protected:
    MissingContextTest() {
        giveFeedOf(1);
        load();
        controller->setExtensionContext(nullptr);
    }
};

TEST_F(MissingContextTest, paying) {
    EXPECT_FATAL(act(0, Action::Paid()));
}

TEST_F(MissingContextTest, deletingFromASinglePlan) {
    EXPECT_FATAL(act(0, Action::Delete(false)));
}

TEST_F(MissingContextTest, editing) {
    EXPECT_FATAL(act(0, Action::Info()));
}

TEST_F(MissingContextTest, choosingInASheet) {
    act(0, Action::Later(0));
    EXPECT_FATAL(controller->actionSheetClickedButtonAtIndex(1));
}

TEST_F(MissingContextTest, adding) {
    EXPECT_FATAL(controller->todayAddTableViewCellClickAddButton());
}

TEST_F(MissingContextTest, clickingTheLastRow) {
    EXPECT_FATAL(controller->todayAddTableViewCellClickContentCell());
}

// Other actions need no context.
TEST_F(MissingContextTest, cancellingASheetAndClickingUnderAllGoOn) {
    act(0, Action::Later(0));
    controller->actionSheetClickedButtonAtIndex(0);
    EXPECT_FALSE(table().isHidden());
    controller->showAllTransactions(0);
    controller->todayAddTableViewCellClickContentCell();
    EXPECT_THAT(opened, testing::IsEmpty());
}

} // namespace
} // namespace controller

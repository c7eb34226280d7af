#include "platform/views/Accessibility.h"
#include "support/AccessibleEvents.h"
#include "support/Application.h"
#include "views/rows/RowTest.h"

#include <QAccessible>

namespace rows {
namespace {

// Rows in a shown window, as assistive programs find them.
class RowAccessibilityTest : public RowTest {
protected:
    // Before any row is made: Qt 6.8 (unlike 6.4) reports the children of a view that is hidden before it was
    // shown, and keeps the interface that it makes for that.
    static void SetUpTestSuite() { platform::installViewAccessibility(); }

    RowAccessibilityTest() {
        showStage();
        row->configureForItem(item(), 60);
        row->delegate = delegate;
    }

    [[nodiscard]] static QAccessibleInterface& interfaceOf(QWidget& view) {
        return *QAccessible::queryAccessibleInterface(&view);
    }
    [[nodiscard]] QAccessibleInterface& face() const { return interfaceOf(*row); }

    std::shared_ptr<TodayTableCellView> row = makeRow();
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
};

TEST_F(RowAccessibilityTest, aRowIsAListItemNamedAfterItsTransaction) {
    EXPECT_EQ(face().role(), QAccessible::ListItem);
    EXPECT_EQ(face().text(QAccessible::Name), QStringLiteral("Rent, 12.50"));
    EXPECT_EQ(face().text(QAccessible::Description), QStringLiteral("Mar 10, 2026"));
}

TEST_F(RowAccessibilityTest, anOverdueTransactionIsCalledSo) {
    row->configureForItem(overdueItem(), 60);
    EXPECT_EQ(face().text(QAccessible::Description), QStringLiteral("Mar 10, 2026, OverdueDescription"));
}

TEST_F(RowAccessibilityTest, aReusedRowIsNamedAfterItsNewTransaction) {
    auto values = rent();
    values.name = QStringLiteral("Gym");
    values.amount = QStringLiteral("7.00");
    row->configureForItem(item(values), 60);
    EXPECT_EQ(face().text(QAccessible::Name), QStringLiteral("Gym, 7.00"));
}

TEST_F(RowAccessibilityTest, aRowWithoutATransactionHasNoName) {
    const auto empty = makeRow();
    EXPECT_EQ(interfaceOf(*empty).text(QAccessible::Name), QString());
}

TEST_F(RowAccessibilityTest, aRowTellsWhetherItIsOpen) {
    EXPECT_TRUE(face().state().expandable);
    EXPECT_TRUE(face().state().collapsed);
    EXPECT_FALSE(face().state().expanded);
    row->cellClicked();
    EXPECT_TRUE(face().state().expanded);
    EXPECT_FALSE(face().state().collapsed);
}

TEST_F(RowAccessibilityTest, aRowSaysInWordsThatItIsOpen) {
    row->cellClicked();
    EXPECT_EQ(face().text(QAccessible::Description), QStringLiteral("Mar 10, 2026, OpenRowDescription"));
    row->collapseCell();
    EXPECT_EQ(face().text(QAccessible::Description), QStringLiteral("Mar 10, 2026"));
}

TEST_F(RowAccessibilityTest, aRowTellsEachTimeItOpensOrClosesAndNoOftener) {
    support::AccessibleEvents events;
    const auto expectTold = [&](std::size_t count) {
        EXPECT_EQ(events.count(QAccessible::StateChanged, row.get()), count);
        EXPECT_EQ(events.count(QAccessible::DescriptionChanged, row.get()), count);
    };
    row->cellClicked();
    expectTold(1);
    row->cellClicked();
    expectTold(2);
    row->collapseCell(); // closed already
    expectTold(2);
    row->cellClicked();
    row->collapseCell();
    expectTold(4);
    row->cellClicked();
    row->buttonsPanelUserClickAction(TodayTransactionAction::Info());
    expectTold(5);
    row->buttonsPanelUserClickAction(TodayTransactionAction::Later(0));
    expectTold(6);
    row->buttonsPanelUserClickAction(TodayTransactionAction::Delete(false));
    finishSlide();
    expectTold(6);
}

TEST_F(RowAccessibilityTest, aRowIsOpenWhenItTellsThatItOpens) {
    bool wasExpanded = false;
    delegate->during = [&] { wasExpanded = face().state().expanded; };
    row->cellClicked();
    EXPECT_TRUE(wasExpanded);
}

TEST_F(RowAccessibilityTest, aRowIsPressedAndToggled) {
    QAccessibleActionInterface* actions = face().actionInterface();
    ASSERT_TRUE(actions);
    for (const QString& action :
         {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction()}) {
        EXPECT_TRUE(actions->actionNames().contains(action));
        actions->doAction(action);
        EXPECT_TRUE(row->isExpanded());
        finishSlide();
        actions->doAction(action);
        EXPECT_FALSE(row->isExpanded());
        finishSlide();
    }
    EXPECT_EQ(delegate->opened.size(), 2U);
}

TEST_F(RowAccessibilityTest, thePanelIsThereWhileTheRowIsOpenOnly) {
    const auto isInvisible = [](QWidget& view) { return bool(interfaceOf(view).state().invisible); };
    const auto expectInvisible = [&](bool invisible) {
        EXPECT_EQ(face().indexOfChild(&interfaceOf(*row->rightButtonsPanel)) < 0, invisible);
        EXPECT_EQ(isInvisible(*row->rightButtonsPanel), invisible);
        for (platform::View* button : buttonsOf(*row))
            EXPECT_EQ(isInvisible(*button), invisible);
    };
    expectInvisible(true);
    row->cellClicked();
    finishSlide();
    expectInvisible(false);
    row->collapseCell();
    finishSlide();
    expectInvisible(true);
}

TEST_F(RowAccessibilityTest, theButtonsOfAnOpenRowArePressed) {
    row->cellClicked();
    finishSlide();
    QAccessibleInterface& info = interfaceOf(*buttonsOf(*row)[2]);
    EXPECT_EQ(info.role(), QAccessible::Button);
    info.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_EQ(delegate->actions.size(), 1U);
    EXPECT_EQ(delegate->actions[0], TodayTransactionAction::Info());
}

TEST_F(RowAccessibilityTest, theButtonsOfAClosingRowAreDisabledAndNotPressed) {
    row->cellClicked();
    finishSlide();
    row->collapseCell();
    for (platform::View* button : buttonsOf(*row)) {
        EXPECT_TRUE(interfaceOf(*button).state().disabled);
        interfaceOf(*button).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    EXPECT_TRUE(delegate->actions.empty());
    finishSlide();
    row->cellClicked();
    for (platform::View* button : buttonsOf(*row))
        EXPECT_FALSE(interfaceOf(*button).state().disabled) << "an opening row's can be pressed";
}

TEST_F(RowAccessibilityTest, theAddRowIsAListItemThatIsPressed) {
    struct Counting final : TodayAddTableViewCellDelegate {
        void todayAddTableViewCellClickAddButton() override { ++buttonClicks; }
        void todayAddTableViewCellClickContentCell() override { ++contentClicks; }
        int buttonClicks = 0, contentClicks = 0;
    };
    const auto counting = std::make_shared<Counting>();
    const auto addRow = makeAddRow();
    addRow->delegate = counting;
    addRow->titleLabel->setStringValue(QStringLiteral("New transaction"));
    QAccessibleInterface& add = interfaceOf(*addRow);
    EXPECT_EQ(add.role(), QAccessible::ListItem);
    EXPECT_EQ(add.text(QAccessible::Name), QStringLiteral("New transaction"));
    EXPECT_FALSE(add.state().expandable);
    ASSERT_TRUE(add.actionInterface());
    add.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(counting->contentClicks, 1);
    QAccessibleInterface& button = interfaceOf(*addRow->addButton);
    EXPECT_EQ(button.text(QAccessible::Name), QStringLiteral("AddButtonHelp"));
    button.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(counting->buttonClicks, 1);
    EXPECT_EQ(counting->contentClicks, 1);
}

} // namespace
} // namespace rows

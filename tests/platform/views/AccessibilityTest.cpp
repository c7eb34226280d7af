#include "platform/views/Accessibility.h"

#include "platform/views/Button.h"
#include "platform/views/ImageView.h"
#include "platform/views/Label.h"
#include "platform/views/TableView.h"
#include "platform/views/View.h"
#include "support/AccessibleEvents.h"
#include "support/Application.h"
#include "support/Events.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using platform::AccessibleTraits;
using platform::Button;
using platform::View;
using testing::ElementsAre;

namespace {

class Described final : public View {
public:
    explicit Described(std::string name = {}) { traits.name = QString::fromStdString(name); }

    AccessibleTraits accessibleTraits() const override { return traits; }
    void performAccessibleAction(const QString& action) override { actions.push_back(action.toStdString()); }

    AccessibleTraits traits;
    std::vector<std::string> actions;
};

QAccessibleInterface& interfaceOf(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

std::vector<std::string> childrenOf(QWidget& widget) {
    QAccessibleInterface& parent = interfaceOf(widget);
    std::vector<std::string> names;
    for (int i = 0; i < parent.childCount(); ++i) {
        QAccessibleInterface* child = parent.child(i);
        EXPECT_EQ(parent.indexOfChild(child), i);
        names.push_back(child->text(QAccessible::Name).toStdString());
    }
    EXPECT_EQ(parent.child(parent.childCount()), nullptr);
    EXPECT_EQ(parent.child(-1), nullptr);
    return names;
}

class Accessibility : public testing::Test {
protected:
    static void SetUpTestSuite() { platform::installViewAccessibility(); }

    void SetUp() override { support::showWindow(root, 200, 200); }

    void add(View& view, const QRectF& frame = QRectF(0, 0, 50, 50)) {
        root.addSubview(view);
        view.setFrame(frame);
    }

    Described root;
};

TEST_F(Accessibility, aViewIsAGroupUnlessItSaysOtherwise) {
    View plain;
    add(plain);
    EXPECT_EQ(interfaceOf(plain).role(), QAccessible::Grouping);
}

TEST_F(Accessibility, tellsWhatTheTraitsSay) {
    Described view;
    add(view);
    view.traits = {
        QAccessible::ListItem, QStringLiteral("Rent"), QStringLiteral("overdue"), std::nullopt, {}};
    QAccessibleInterface& told = interfaceOf(view);
    EXPECT_EQ(told.role(), QAccessible::ListItem);
    EXPECT_EQ(told.text(QAccessible::Name), QStringLiteral("Rent"));
    EXPECT_EQ(told.text(QAccessible::Description), QStringLiteral("overdue"));
    EXPECT_FALSE(told.state().expandable);
    view.traits.name = QStringLiteral("Water");
    EXPECT_EQ(told.text(QAccessible::Name), QStringLiteral("Water")) << "as they are now";
}

TEST_F(Accessibility, tellsOfViewsThatOpenAndClose) {
    Described view;
    add(view);
    view.traits.isExpanded = false;
    EXPECT_TRUE(interfaceOf(view).state().expandable);
    EXPECT_TRUE(interfaceOf(view).state().collapsed);
    EXPECT_FALSE(interfaceOf(view).state().expanded);
    view.traits.isExpanded = true;
    EXPECT_FALSE(interfaceOf(view).state().collapsed);
    EXPECT_TRUE(interfaceOf(view).state().expanded);
}

TEST_F(Accessibility, tellsOfViewsThatAreBusy) {
    Described view;
    add(view);
    EXPECT_FALSE(interfaceOf(view).state().busy);
    view.traits.isBusy = true;
    EXPECT_TRUE(interfaceOf(view).state().busy);
}

TEST_F(Accessibility, performsTheActionsOfTheTraitsAndNoOthers) {
    Described view;
    add(view);
    view.traits.actions = {QAccessibleActionInterface::toggleAction()};
    QAccessibleActionInterface* actions = interfaceOf(view).actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    actions->doAction(QAccessibleActionInterface::toggleAction());
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(view.actions, ElementsAre(QAccessibleActionInterface::toggleAction().toStdString()));
}

TEST_F(Accessibility, aDisabledViewPerformsNothing) {
    Described view;
    add(view);
    view.traits.actions = {QAccessibleActionInterface::toggleAction()};
    view.setEnabled(false);
    interfaceOf(view).actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_THAT(view.actions, ElementsAre());
}

TEST_F(Accessibility, aViewThatIsHiddenOrTakenOutPerformsNothing) {
    View holder;
    add(holder);
    Described view;
    holder.addSubview(view);
    view.traits.actions = {QAccessibleActionInterface::toggleAction()};
    QAccessibleActionInterface* actions = interfaceOf(view).actionInterface();
    holder.setHidden(true);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    holder.setHidden(false);
    view.removeFromSuperview();
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_THAT(view.actions, ElementsAre());
    holder.addSubview(view);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(view.actions.size(), 1U);
}

TEST_F(Accessibility, aButtonIsPressed) {
    Button button;
    int clicks = 0;
    button.setAction([&] { ++clicks; });
    button.setAttributedTitle({QStringLiteral("Cancel"), QFont()});
    add(button);
    QAccessibleInterface& told = interfaceOf(button);
    EXPECT_EQ(told.role(), QAccessible::Button);
    EXPECT_EQ(told.text(QAccessible::Name), QStringLiteral("Cancel"));
    EXPECT_TRUE(told.state().focusable);
    told.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1);
}

TEST_F(Accessibility, aButtonWithoutATitleHasItsHelpTextForAName) {
    Button button;
    button.setHelpTextKey("SomeKeyWithoutAText"); // which then shows itself
    add(button);
    EXPECT_EQ(interfaceOf(button).text(QAccessible::Name), QStringLiteral("SomeKeyWithoutAText"));
}

TEST_F(Accessibility, aLabelIsItsText) {
    platform::Label label;
    label.setStringValue(QStringLiteral("Rent"));
    add(label);
    EXPECT_EQ(interfaceOf(label).role(), QAccessible::StaticText);
    EXPECT_EQ(interfaceOf(label).text(QAccessible::Name), QStringLiteral("Rent"));
}

TEST_F(Accessibility, anImageIsAPicture) {
    platform::ImageView image;
    add(image);
    EXPECT_EQ(interfaceOf(image).role(), QAccessible::Graphic);
}

TEST_F(Accessibility, aWindowThatIsNoViewIsAWindow) {
    QWidget window;
    QWidget child(&window);
    EXPECT_EQ(interfaceOf(window).role(), QAccessible::Window);
    EXPECT_EQ(interfaceOf(child).role(), QAccessible::Client);
}

TEST_F(Accessibility, aViewThatHasFadedOutIsInvisible) {
    View panel;
    Button button;
    add(panel);
    panel.addSubview(button);
    const auto isInvisible = [&] { return bool(interfaceOf(button).state().invisible); };
    EXPECT_FALSE(isInvisible());
    for (View* faded : {&panel, static_cast<View*>(&button)}) {
        faded->setAlphaValue(0);
        EXPECT_TRUE(isInvisible());
        faded->setAlphaValue(0.01);
        EXPECT_FALSE(isInvisible());
    }
}

// --- what is told unasked

TEST_F(Accessibility, tellsOfAViewThatOpensInItsStateAndItsDescription) {
    Described view;
    add(view);
    support::AccessibleEvents events;
    view.notifyExpandedChanged();
    ASSERT_EQ(events.all().size(), 2U);
    for (const auto& event : events.all())
        EXPECT_EQ(event.object, &view);
    EXPECT_EQ(events.all()[0].type, QAccessible::StateChanged);
    EXPECT_TRUE(events.all()[0].changed.expanded);
    EXPECT_TRUE(events.all()[0].changed.collapsed);
    EXPECT_EQ(events.all()[1].type, QAccessible::DescriptionChanged);
}

TEST_F(Accessibility, tellsOfAViewThatBecomesBusyInItsStateAndItsDescription) {
    Described view;
    add(view);
    support::AccessibleEvents events;
    view.notifyBusyChanged();
    ASSERT_EQ(events.all().size(), 2U);
    EXPECT_EQ(events.all()[0].type, QAccessible::StateChanged);
    EXPECT_TRUE(events.all()[0].changed.busy);
    EXPECT_FALSE(events.all()[0].changed.expanded);
    EXPECT_EQ(events.all()[1].type, QAccessible::DescriptionChanged);
    EXPECT_EQ(events.all()[1].object, &view);
}

TEST_F(Accessibility, tellsOfAViewThatIsDisabledAndDrawsNothingAnew) {
    struct Drawn final : View {
        int times = 0;
        void paintEvent(QPaintEvent*) override { ++times; }
    } view;
    add(view);
    view.setFrame(QRectF(0, 0, 50, 50));
    root.show();
    QCoreApplication::processEvents();
    const int before = view.times;
    EXPECT_GT(before, 0);
    const support::AccessibleEvents events;
    view.setEnabled(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(view.times, before);
    ASSERT_EQ(events.count(QAccessible::StateChanged, &view), 1U);
    EXPECT_TRUE(events.all().front().changed.disabled);
    EXPECT_TRUE(interfaceOf(view).state().disabled);
}

// --- the tree

TEST_F(Accessibility, listsViewsInTheirOrder) {
    Described first("first");
    Described second("second");
    add(first);
    add(second);
    EXPECT_THAT(childrenOf(root), ElementsAre("first", "second"));
    EXPECT_EQ(interfaceOf(second).parent(), &interfaceOf(root));
}

TEST_F(Accessibility, leavesHiddenViewsOut) {
    Described first("first");
    Described second("second");
    add(first);
    add(second);
    first.setHidden(true);
    EXPECT_THAT(childrenOf(root), ElementsAre("second"));
    first.setHidden(false);
    EXPECT_THAT(childrenOf(root), ElementsAre("first", "second"));
}

TEST_F(Accessibility, leavesWhollyClippedViewsOut) {
    Described first("first");
    Described second("second");
    add(first);
    add(second);
    first.setClip(QRectF());
    EXPECT_THAT(childrenOf(root), ElementsAre("second"));
    first.setClip(QRectF(0, 0, 10, 10));
    EXPECT_THAT(childrenOf(root), ElementsAre("first", "second"));
}

TEST_F(Accessibility, knowsTheTreeOfAnUnshownWindow) {
    View window;
    Described child("child");
    Described hidden("hidden");
    child.setParent(&window); // as an interface file makes it
    window.addSubview(hidden);
    hidden.setHidden(true);
    EXPECT_THAT(childrenOf(window), ElementsAre("child"));
}

TEST_F(Accessibility, listsATablesRowsFromTopToBottom) {
    class Rows final : public platform::TableViewDataSource, public platform::TableViewDelegate {
    public:
        std::int64_t numberOfRowsInTableView(platform::TableView&) override {
            return static_cast<std::int64_t>(shown.size());
        }
        std::shared_ptr<View> tableViewViewForTableColumnRow(platform::TableView&, std::int64_t,
                                                             std::int64_t row) override {
            return shown[static_cast<std::size_t>(row)];
        }
        double tableViewHeightOfRow(platform::TableView&, std::int64_t) override { return 50; }
        std::vector<std::shared_ptr<View>> shown;
    } rows;
    platform::TableView table;
    add(table, QRectF(0, 0, 200, 200));
    table.setDataSource(&rows);
    table.setDelegate(&rows);
    const auto a = platform::makeView<Described>("a");
    const auto b = platform::makeView<Described>("b");
    const auto c = platform::makeView<Described>("c");
    rows.shown = {b};
    table.reloadData();
    rows.shown = {a, b, c};
    table.reloadData(); // b keeps its place in the tree
    EXPECT_EQ(interfaceOf(table).role(), QAccessible::List);
    EXPECT_THAT(childrenOf(table), ElementsAre("a", "b", "c"));
    table.setDelegate(nullptr);
    table.setDataSource(nullptr);
}

// --- the keyboard's way

TEST_F(Accessibility, theTabKeyPassesHiddenAndClippedButtons) {
    View panel;
    Button inPanel;
    Button first;
    Button last;
    add(first);
    add(panel);
    panel.addSubview(inPanel);
    add(last);
    root.activateWindow();
    support::settle();
    first.setFocus();
    ASSERT_TRUE(first.hasFocus());
    panel.setClip(QRectF());
    support::pressKey(first, Qt::Key_Tab);
    EXPECT_TRUE(last.hasFocus());
    first.setFocus();
    panel.setClip(std::nullopt);
    support::pressKey(first, Qt::Key_Tab);
    EXPECT_TRUE(inPanel.hasFocus());
    panel.setHidden(true);
    EXPECT_FALSE(inPanel.hasFocus()) << "what hides lets go of the keyboard";
    first.setFocus();
    support::pressKey(first, Qt::Key_Tab);
    EXPECT_TRUE(last.hasFocus());
}

} // namespace

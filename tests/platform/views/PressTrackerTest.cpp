#include "platform/views/PressTracker.h"

#include "platform/views/Button.h"
#include "platform/views/MouseFixture.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <array>
#include <chrono>

namespace mouse_test {
namespace {

using namespace std::chrono_literals;

// Two views that take each other's place as the test says.
class PressSeries : public Mouse {
protected:
    void putInFront(Spy& view) { root.addSubview(view); }

    Spy second{log, "second", QRectF(0, 0, 200, 100), &root};
    Spy first{log, "first", QRectF(0, 0, 200, 100), &root};
    const std::chrono::milliseconds time{QGuiApplication::styleHints()->mouseDoubleClickInterval()};
    const int distance = QGuiApplication::styleHints()->mouseDoubleClickDistance();
};

TEST_F(PressSeries, isTheFirstViewsHoweverLongItIs) {
    support::click(root, {50, 50});
    putInFront(second);
    for (int i = 0; i < 6; ++i)
        support::clickAfter(150ms, root, {50, 50});
    EXPECT_THAT(log, ElementsAre("first down", "first up"));
}

TEST_F(PressSeries, reachesTheFirstViewAgainWhereItIsBack) {
    support::click(root, {50, 50});
    putInFront(second);
    support::clickAfter(150ms, root, {50, 50});
    putInFront(first);
    support::clickAfter(150ms, root, {50, 50});
    EXPECT_THAT(log, ElementsAre("first down", "first up", "first down", "first up"));
}

TEST_F(PressSeries, isNobodysAfterAFirstPressThatWas) {
    root.hit = [](QPointF) { return nullptr; };
    support::click(root, {50, 50});
    root.hit = nullptr;
    support::clickAfter(150ms, root, {50, 50});
    support::clickAfter(150ms, root, {50, 50});
    EXPECT_THAT(log, ElementsAre());
}

TEST_F(PressSeries, endsWithTheTimeOfADoubleClick) {
    support::click(root, {50, 50});
    putInFront(second);
    support::clickAfter(time - 1ms, root, {50, 50});
    support::clickAfter(time - 1ms, root, {50, 50});
    EXPECT_THAT(log, ElementsAre("first down", "first up"));
    support::clickAfter(time, root, {50, 50});
    EXPECT_THAT(log, ElementsAre("first down", "first up", "second down", "second up"));
}

TEST_F(PressSeries, countsTheTimeFromPressToPress) {
    support::press(root, {50, 50});
    support::release(root, {50, 50}); // however late
    putInFront(second);
    support::clickAfter(time, root, {50, 50});
    EXPECT_THAT(log, ElementsAre("first down", "first up", "second down", "second up"));
}

TEST_F(PressSeries, endsBeyondTheDistanceOfADoubleClick) {
    for (const QPoint away : {QPoint(distance + 1, 0), QPoint(0, -distance - 1)}) {
        log.clear();
        putInFront(first);
        support::click(root, {50, 50});
        putInFront(second);
        support::clickAfter(30ms, root, QPoint(50, 50) + away);
        EXPECT_THAT(log, ElementsAre("first down", "first up", "second down", "second up"));
    }
}

// Measured from the press before, so that a hand that trembles does not leave the series.
TEST_F(PressSeries, holdsWithinTheDistanceOfThePressBefore) {
    support::click(root, {50, 50});
    putInFront(second);
    for (int i = 1; i <= 4; ++i)
        support::clickAfter(30ms, root, {50 + i * distance, 50 - distance});
    EXPECT_THAT(log, ElementsAre("first down", "first up"));
}

TEST_F(PressSeries, isOfOneViewElsewhereInTheWindow) {
    first.setFrame(QRectF(0, 0, 100, 100));
    second.setFrame(QRectF(100, 0, 100, 100));
    support::click(root, {50, 50});
    support::clickAfter(30ms, root, {150, 50});
    support::clickAfter(30ms, root, {50, 50});
    EXPECT_THAT(log,
                ElementsAre("first down", "first up", "second down", "second up", "first down", "first up"));
}

// --- a view that is disabled

TEST_F(Mouse, aDisabledViewAndWhatIsInItTakeNoPress) {
    Spy behind(log, "behind", QRectF(0, 0, 100, 100), &root);
    Spy child(log, "child", QRectF(0, 0, 100, 100), &root);
    Spy inner(log, "inner", QRectF(0, 0, 50, 50), &child);
    child.setEnabled(false);
    support::click(root, {25, 25});
    support::click(root, {75, 75});
    EXPECT_THAT(log, ElementsAre()) << "nor does what it covers";
    child.setEnabled(true);
    support::click(root, {25, 25});
    EXPECT_THAT(log, ElementsAre("inner down", "inner up"));
}

TEST_F(Mouse, aViewThatIsDisabledOrHiddenLosesThePress) {
    Spy child(log, "child", QRectF(0, 0, 100, 100), &root);
    Spy inner(log, "inner", QRectF(0, 0, 50, 50), &child);
    inner.passesOn = inner.tellsOfCancelling = child.tellsOfCancelling = true;
    const std::array<std::function<void(bool)>, 2> takes{[&](bool taken) { child.setEnabled(!taken); },
                                                         [&](bool taken) { child.setHidden(taken); }};
    for (const auto& take : takes) {
        log.clear();
        support::press(root, {25, 25});
        take(true);
        EXPECT_FALSE(View::isPressHeld());
        support::release(root, {25, 25});
        take(false);
        EXPECT_THAT(log, ElementsAre("inner down", "child down", "inner cancelled", "child cancelled"));
    }
}

TEST_F(Mouse, aDroppedPressIsCancelled) {
    root.tellsOfCancelling = true;
    support::press(root, {25, 25});
    View::dropHeldPress();
    View::dropHeldPress();
    EXPECT_THAT(log, ElementsAre("root down", "root cancelled"));
}

// --- a view that is taken out

TEST_F(Mouse, aTargetThatIsTakenOutGetsItsRelease) {
    Spy child(log, "child", QRectF(0, 0, 100, 100), &root);
    Spy instead(log, "instead", QRectF(0, 0, 100, 100));
    support::press(root, {50, 50});
    child.removeFromSuperview();
    root.addSubview(instead);
    EXPECT_TRUE(View::isPressHeld());
    support::release(root, {50, 50});
    EXPECT_FALSE(View::isPressHeld());
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("child down", "child up", "instead down", "instead up"));
}

TEST_F(Mouse, aTargetThatNobodyOwnsAnyMoreGetsItsReleaseToo) {
    auto child = platform::makeView<Spy>(log, "child", QRectF(0, 0, 100, 100), &root);
    new Spy(log, "inner", QRectF(0, 0, 50, 50), child.get()); // the toolkit's tree owns it
    const std::weak_ptr<View> weak = child;
    support::press(root, {25, 25});
    child.reset();
    support::flushDeferredDeletes();
    EXPECT_FALSE(weak.expired());
    support::release(root, {25, 25});
    EXPECT_TRUE(weak.expired());
    EXPECT_THAT(log, ElementsAre("inner down", "inner up"));
}

TEST_F(Mouse, aButtonThatIsTakenOutIsClickedWhereItWas) {
    int clicks = 0;
    const auto row = platform::makeView<View>();
    auto* button = new platform::Button(row.get());
    button->setAction([&] { ++clicks; });
    for (const QPoint place : {QPoint(75, 60), QPoint(30, 60)}) {
        root.addSubview(*row);
        row->setFrame(QRectF(0, 50, 200, 50));
        button->setFrame(QRectF(50, 0, 50, 50));
        support::press(root, {75, 60});
        row->removeFromSuperview();
        support::release(root, place);
    }
    EXPECT_EQ(clicks, 1);
}

TEST_F(Mouse, aButtonThatMovesAwayUnderTheHandIsClicked) {
    int clicks = 0;
    platform::Button button(&root);
    root.addSubview(button);
    button.setAction([&] { ++clicks; });
    button.setFrame(QRectF(0, 0, 50, 50));
    support::press(root, {25, 25});
    button.setFrame(QRectF(100, 0, 50, 50));
    support::release(root, {26, 25});
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace mouse_test

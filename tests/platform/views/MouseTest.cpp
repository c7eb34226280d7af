#include "platform/views/MouseFixture.h"

#include <QApplication>
#include <QMouseEvent>

namespace mouse_test {

TEST_F(Mouse, reachesTheFrontmostSubviewAtThePoint) {
    Spy back(log, "back", QRectF(0, 0, 100, 100), &root);
    Spy front(log, "front", QRectF(50, 0, 100, 100), &root);
    support::click(root, {75, 50});
    EXPECT_THAT(log, ElementsAre("front down", "front up"));
    log.clear();
    support::click(root, {25, 50});
    EXPECT_THAT(log, ElementsAre("back down", "back up"));
}

// Until a window manager has said where it put the window, the toolkit takes it to be elsewhere.
TEST_F(Mouse, reachesWhatIsAtThePlaceInTheWindowWhateverTheGlobalPosition) {
    Spy child(log, "child", QRectF(50, 0, 50, 50), &root);
    const QPointF place(75, 25);
    const QPointF elsewhere = root.mapToGlobal(place) + QPointF(500, 300);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, place, place, elsewhere, Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&root, &event);
    }
    EXPECT_THAT(log, ElementsAre("child down", "child up"));
}

TEST_F(Mouse, reachesTheRootWhereNoSubviewIs) {
    Spy child(log, "child", QRectF(50, 0, 50, 50), &root);
    support::click(root, {10, 10});
    EXPECT_THAT(log, ElementsAre("root down", "root up"));
}

TEST_F(Mouse, reachesEveryEdgeOfTheRoot) {
    for (const QPoint point : {QPoint(0, 0), QPoint(199, 0), QPoint(0, 99), QPoint(199, 99)}) {
        log.clear();
        support::click(root, point);
        EXPECT_THAT(log, ElementsAre("root down", "root up")) << point.x() << ' ' << point.y();
    }
}

TEST_F(Mouse, staysWithTheTargetOfThePress) {
    Spy left(log, "left", QRectF(0, 0, 100, 100), &root);
    Spy right(log, "right", QRectF(100, 0, 100, 100), &root);
    support::press(root, {50, 50});
    support::drag(root, {150, 50});
    support::drag(root, {199, 50});
    support::release(root, {199, 50});
    EXPECT_THAT(log, ElementsAre("left down", "left dragged", "left dragged", "left up"));
}

TEST_F(Mouse, isHeldFromPressToRelease) {
    EXPECT_FALSE(View::isPressHeld());
    support::press(root, {50, 50});
    EXPECT_TRUE(View::isPressHeld());
    support::drag(root, {60, 50});
    EXPECT_TRUE(View::isPressHeld());
    support::release(root, {60, 50});
    EXPECT_FALSE(View::isPressHeld());
}

TEST_F(Mouse, releaseOfADroppedPressReachesNobody) {
    support::press(root, {50, 50});
    View::dropHeldPress();
    EXPECT_FALSE(View::isPressHeld());
    support::drag(root, {60, 50});
    support::release(root, {60, 50});
    EXPECT_THAT(log, ElementsAre("root down"));
}

TEST_F(Mouse, tellsWhereItIsOnTheDesktop) {
    support::press(root, {50, 50});
    support::drag(root, {60, 55});
    EXPECT_EQ(root.lastPosition.toPoint(), root.mapToGlobal(QPoint(60, 55)));
    support::release(root, {60, 55});
}

TEST_F(Mouse, movesUnheldReachNobody) {
    support::drag(root, {50, 50});
    EXPECT_THAT(log, ElementsAre());
}

TEST_F(Mouse, climbsTheSuperviewsUntilOneHandlesIt) {
    Spy middle(log, "middle", QRectF(0, 0, 100, 100), &root);
    middle.passesOn = true;
    View plain;
    middle.addSubview(plain);
    plain.setFrame(QRectF(0, 0, 50, 50));
    support::press(root, {25, 25});
    support::drag(root, {26, 25});
    support::release(root, {26, 25});
    EXPECT_THAT(log, ElementsAre("middle down", "root down", "middle dragged", "root dragged", "middle up",
                                 "root up"));
}

TEST_F(Mouse, thatNobodyHandlesIsDroppedQuietly) {
    View window;
    View child;
    window.addSubview(child);
    support::showWindow(window, 50, 50);
    child.setFrame(QRectF(0, 0, 50, 50));
    support::click(window, {25, 25});
    EXPECT_THAT(log, ElementsAre());
}

// What hitTest of the root says holds, whatever widget lies under the mouse.
TEST_F(Mouse, goesWhereTheRootsHitTestSays) {
    Spy under(log, "under", QRectF(0, 0, 100, 100), &root);
    Spy chosen(log, "chosen", QRectF(150, 0, 10, 10), &root);
    root.hit = [&](QPointF) { return &chosen; };
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("chosen down", "chosen up"));
}

TEST_F(Mouse, goesNowhereWhereTheRootsHitTestSaysNone) {
    Spy under(log, "under", QRectF(0, 0, 100, 100), &root);
    root.hit = [](QPointF) { return nullptr; };
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre());
}

TEST_F(Mouse, asksHitTestForPointsOfTheSuperview) {
    Spy child(log, "child", QRectF(30, 10, 100, 80), &root);
    std::vector<QPointF> asked;
    child.hit = [&](QPointF point) {
        asked.push_back(point);
        return &child;
    };
    support::press(root, {50, 50});
    EXPECT_THAT(asked, ElementsAre(QPointF(50, 50)));
    support::release(root, {50, 50});
}

TEST_F(Mouse, asksHitTestOnceAPress) {
    int count = 0;
    root.hit = [&](QPointF) {
        ++count;
        return &root;
    };
    support::press(root, {50, 50});
    support::drag(root, {51, 50});
    support::release(root, {51, 50});
    EXPECT_EQ(count, 1);
}

TEST_F(Mouse, passesPlainWidgetsOnTheWay) {
    Spy middle(log, "middle", QRectF(0, 0, 100, 100), &root);
    QWidget plain(&middle);
    plain.setGeometry(0, 0, 100, 100);
    plain.show();
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("middle down", "middle up"));
}

TEST_F(Mouse, missesHiddenViews) {
    Spy child(log, "child", QRectF(0, 0, 100, 100), &root);
    child.setHidden(true);
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("root down", "root up"));
}

TEST_F(Mouse, missesWhatReachesOutOfTheSuperview) {
    Spy middle(log, "middle", QRectF(50, 0, 50, 50), &root);
    Spy inner(log, "inner", QRectF(-5, 0, 50, 50), &middle);
    support::click(root, {47, 25});
    support::click(root, {50, 25});
    EXPECT_THAT(log, ElementsAre("root down", "root up", "inner down", "inner up"));
}

TEST_F(Mouse, hitsAViewThatHasFadedAway) {
    Spy child(log, "child", QRectF(0, 0, 100, 100), &root);
    child.setAlphaValue(0);
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("child down", "child up"));
}

// --- which presses count

TEST_F(Mouse, ignoresTheOtherButtons) {
    support::click(root, {50, 50}, Qt::RightButton);
    support::click(root, {50, 50}, Qt::MiddleButton);
    EXPECT_THAT(log, ElementsAre());
}

TEST_F(Mouse, otherButtonsEndNoPress) {
    support::press(root, {50, 50});
    support::click(root, {50, 50}, Qt::RightButton);
    EXPECT_THAT(log, ElementsAre("root down"));
    support::release(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("root down", "root up"));
}

TEST_F(Mouse, aDoubleClickIsTwoClicks) {
    Spy child(log, "child", QRectF(0, 0, 100, 100), &root);
    support::doubleClick(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("child down", "child up", "child down", "child up"));
}

TEST_F(Mouse, theSecondPressOfADoubleClickReachesNobodyElse) {
    Spy first(log, "first", QRectF(0, 0, 100, 100), &root);
    Spy second(log, "second", QRectF(), nullptr);
    first.whenReleased = [&] {
        first.removeFromSuperview();
        root.addSubview(second);
        second.setFrame(QRectF(0, 0, 100, 100));
    };
    support::doubleClick(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("first down", "first up"));
    log.clear();
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("second down", "second up")) << "a new click is meant for it";
}

TEST_F(Mouse, theSecondPressReachesTheFirstsViewThatMovedOnlyUnderTheMouse) {
    Spy first(log, "first", QRectF(0, 0, 100, 100), &root);
    first.whenReleased = [&] { first.setFrame(QRectF(100, 0, 100, 100)); };
    support::doubleClick(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("first down", "first up")) << "it went away; the root never had the first";
}

TEST_F(Mouse, theSecondPressReachesNobodyAfterTheFirstReachedNobody) {
    bool blind = true;
    root.hit = [&](QPointF) -> View* { return std::exchange(blind, false) ? nullptr : &root; };
    support::doubleClick(root, {50, 50});
    EXPECT_THAT(log, ElementsAre());
}

// --- views that go

TEST_F(Mouse, aTargetThatGoesTakesItsReleaseWithIt) {
    auto child = std::make_unique<Spy>(log, "child", QRectF(0, 0, 100, 100), &root);
    support::press(root, {50, 50});
    child.reset();
    support::drag(root, {51, 50});
    support::release(root, {51, 50});
    EXPECT_THAT(log, ElementsAre("child down"));
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("child down", "root down", "root up"));
}

TEST_F(Mouse, aTargetThatGoesInItsOwnPressIsForgotten) {
    auto child = std::make_unique<Spy>(log, "child", QRectF(0, 0, 100, 100), &root);
    // The last that it does.
    child->whenPressed = [gone = &child] { gone->release()->deleteLater(); };
    support::press(root, {50, 50});
    support::flushDeferredDeletes();
    support::release(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("child down"));
}

// --- presses of the other buttons after a view is gone

TEST_F(Mouse, otherButtonsReachNoTargetThatWasTakenOut) {
    Spy child(log, "child", QRectF(0, 0, 100, 100), &root);
    support::press(root, {50, 50});
    child.removeFromSuperview();
    support::press(root, {50, 50}, Qt::RightButton);
    support::drag(root, {60, 50});
    support::release(root, {60, 50}, Qt::RightButton);
    EXPECT_THAT(log, ElementsAre("child down"));
    support::release(root, {50, 50});
    support::click(root, {50, 50});
    EXPECT_THAT(log, ElementsAre("child down", "child up", "root down", "root up"));
}

} // namespace mouse_test

#include "panel/WindowPlace.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

namespace {

constexpr QSize small(344, 116);

class WindowPlaceTest : public testing::Test {
protected:
    WindowPlaceTest() {
        place.dock(QGuiApplication::primaryScreen());
        docked = place.state(small);
    }

    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    panel::WindowPlace place;
    QPoint docked;
};

} // namespace

TEST_F(WindowPlaceTest, isTwelvePointsOffTheCornerOfTheWorkArea) {
    EXPECT_EQ(docked, QPoint(room.right() + 1 - 344 - 12, room.top() + 12));
}

TEST_F(WindowPlaceTest, leavesTwelvePointsAboveAndBelowTheTallest) {
    EXPECT_EQ(place.tallest(), room.height() - 24);
}

TEST_F(WindowPlaceTest, staysWhereTheUserHasMovedItUntilItIsDocked) {
    const QPoint here = docked - QPoint(100, -50);
    place.windowIsAt(here);
    EXPECT_EQ(place.state(small), here);
    EXPECT_EQ(place.state({344, 200}), here);
    place.dock(nullptr);
    EXPECT_EQ(place.state(small), docked);
}

TEST_F(WindowPlaceTest, takesARoundedPlaceForTheStatedOne) {
    place.windowIsAt(docked + QPoint(1, -1));
    EXPECT_EQ(place.state(small), docked);
    place.windowIsAt(docked + QPoint(2, 0));
    EXPECT_EQ(place.state(small), docked + QPoint(2, 0));
}

TEST_F(WindowPlaceTest, standsHigherWhereItWouldReachBeyondTheBottomAndComesBack) {
    const QPoint low(100, room.bottom() + 1 - 150);
    place.windowIsAt(low);
    const QPoint higher(100, room.bottom() + 1 - 250);
    EXPECT_EQ(place.state({344, 250}), higher);
    place.windowIsAt(higher);
    EXPECT_EQ(place.state(small), low);
}

TEST_F(WindowPlaceTest, isDockedWhereTheUserMovesItBackToTheEdge) {
    place.windowIsAt(docked - QPoint(100, 0));
    place.windowIsAt(docked);
    const QPoint wider = place.state({444, 116});
    EXPECT_EQ(wider, docked - QPoint(100, 0)) << "its right edge stays";
}

// A window manager answers later than it is asked.
TEST_F(WindowPlaceTest, doesNotTakeAPlaceThatWasStatedBeforeForTheUsers) {
    const QPoint low(100, room.bottom() + 1 - 150);
    place.windowIsAt(low);
    const QPoint higher = place.state({344, 250});
    const QPoint highest = place.state({344, 350});
    place.windowIsAt(low);
    place.windowIsAt(higher);
    EXPECT_EQ(place.state(small), low);
    place.windowIsAt(highest);
    place.windowIsAt(low);
    place.windowIsAt(higher);
    EXPECT_EQ(place.state(small), higher) << "it had left that place, so that the user has moved it there";
}

TEST_F(WindowPlaceTest, doesNotTakeAPlaceThatHasOtherPointsSinceTheScreensChangedForTheUsers) {
    const QPoint here = docked / 2;
    place.screensChanged(here);
    EXPECT_EQ(place.state(small), docked);
    place.windowIsAt(here);
    place.windowIsAt(here);
    EXPECT_EQ(place.state(small), docked);
    place.windowIsAt(docked);
    place.windowIsAt(here);
    EXPECT_EQ(place.state(small), here) << "it had left that place, so that the user has moved it there";
}

TEST_F(WindowPlaceTest, mayBeMovedToTheScreensCorner) {
    place.windowIsAt(room.topLeft());
    EXPECT_EQ(place.state(small), room.topLeft());
}

TEST_F(WindowPlaceTest, isDockedWhereTheUsersPlaceIsOnNoScreen) {
    place.windowIsAt(room.bottomRight() + QPoint(500, 500));
    EXPECT_EQ(place.state(small), docked);
}

TEST_F(WindowPlaceTest, isOnThePrimaryScreenOnceItsOwnHasGone) {
    place.screenGoes(*QGuiApplication::primaryScreen());
    EXPECT_EQ(place.screen(), QGuiApplication::primaryScreen());
    EXPECT_EQ(place.state(small), docked);
}

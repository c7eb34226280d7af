#include "platform/views/ViewFixture.h"

namespace view_test {

// --- frames

TEST(ViewFrame, isKeptWithItsFractions) {
    View view;
    view.setFrame(QRectF(1.25, 2.5, 10.5, 20.25));
    EXPECT_EQ(view.frame(), QRectF(1.25, 2.5, 10.5, 20.25));
    EXPECT_EQ(view.bounds(), QRectF(0, 0, 10.5, 20.25));
}

TEST(ViewFrame, coversEveryPointThatItTouches) {
    View view;
    view.setFrame(QRectF(1.25, 2.5, 10.5, 20.25));
    EXPECT_EQ(view.geometry(), QRect(1, 2, 11, 21));
}

TEST(ViewFrame, mayStartOutsideTheSuperview) {
    View parent;
    View view(&parent);
    view.setFrame(QRectF(-5, -0.5, 50, 50));
    EXPECT_EQ(view.frame(), QRectF(-5, -0.5, 50, 50));
    EXPECT_EQ(view.geometry(), QRect(-5, -1, 50, 51));
}

TEST(ViewFrame, isTheWidgetsGeometryWhereQtResizedIt) {
    View view;
    view.setFrame(QRectF(0.5, 0.5, 10, 10));
    view.resize(30, 40);
    EXPECT_EQ(view.frame().size(), QSizeF(30, 40));
}

TEST(ViewFrame, isTheInterfaceFilesGeometryAtFirst) {
    View view;
    view.setGeometry(3, 4, 50, 60);
    EXPECT_EQ(view.frame(), QRectF(3, 4, 50, 60));
}

TEST(ViewFrame, givesTheSubviewsTheirsAlsoInAnUnshownWindow) {
    Patch view;
    view.setFrame(QRectF(0, 0, 10, 10));
    EXPECT_EQ(view.layouts, 1);
    view.setFrame(QRectF(5, 5, 10, 10));
    EXPECT_EQ(view.layouts, 1) << "a move alone changes no layout";
    view.setFrame(QRectF(5, 5, 10.25, 10));
    EXPECT_EQ(view.layouts, 2) << "also by a fraction that covers one more point";
}

TEST(ViewFrame, ofAViewThatFillsItsSuperviewFollowsIt) {
    View parent;
    View filling(&parent);
    View other(&parent);
    filling.setFillsSuperview(true);
    other.setFrame(QRectF(1, 1, 2, 2));
    parent.setFrame(QRectF(7, 7, 30.5, 40));
    EXPECT_EQ(filling.frame(), QRectF(0, 0, 30.5, 40));
    EXPECT_EQ(other.frame(), QRectF(1, 1, 2, 2));
}

TEST(ViewFrame, followsAWindowThatTheUserResizes) {
    View window;
    View filling(&window);
    filling.setFillsSuperview(true);
    support::showWindow(window, 100, 50);
    window.resize(200, 80);
    support::settle();
    EXPECT_EQ(filling.frame(), QRectF(0, 0, 200, 80));
}

// --- mirroring

TEST(ViewLogicalFrame, countsFromTheLeftWhereReadingStartsThere) {
    View parent;
    parent.setFrame(QRectF(0, 0, 100, 50));
    View view(&parent);
    view.setLogicalFrame(QRectF(10, 5, 30, 20));
    EXPECT_EQ(view.geometry(), QRect(10, 5, 30, 20));
}

TEST(ViewLogicalFrame, countsFromTheRightWhereReadingStartsThere) {
    View parent;
    parent.setLayoutDirection(Qt::RightToLeft);
    parent.setFrame(QRectF(0, 0, 100, 50));
    View view(&parent);
    view.setLogicalFrame(QRectF(10, 5, 30, 20));
    EXPECT_EQ(view.geometry(), QRect(60, 5, 30, 20));
    EXPECT_EQ(view.frame(), QRectF(10, 5, 30, 20)) << "the frame stays logical";
}

TEST(ViewLogicalFrame, keepsItsFractionsWhenMirrored) {
    View parent;
    parent.setLayoutDirection(Qt::RightToLeft);
    parent.setFrame(QRectF(0, 0, 100, 50));
    View view(&parent);
    view.setLogicalFrame(QRectF(9.5, 0, 30, 20)); // 60.5 to 90.5 from the left
    EXPECT_EQ(view.geometry(), QRect(60, 0, 31, 20));
    EXPECT_EQ(view.frame(), QRectF(9.5, 0, 30, 20));
}

TEST(ViewFrame, thatCodeSetsIsNeverMirrored) {
    View parent;
    parent.setLayoutDirection(Qt::RightToLeft);
    parent.setFrame(QRectF(0, 0, 100, 50));
    View view(&parent);
    view.setFrame(QRectF(10, 5, 30, 20));
    EXPECT_EQ(view.geometry(), QRect(10, 5, 30, 20));
}

// --- the tree

TEST(ViewTree, listsSubviewsFromTheBackToTheFront) {
    View parent;
    View first;
    View second;
    parent.addSubview(first);
    parent.addSubview(second);
    EXPECT_THAT(parent.subviews(), ElementsAre(&first, &second));
    EXPECT_EQ(first.superview(), &parent);
    EXPECT_EQ(parent.superview(), nullptr);
}

TEST(ViewTree, addingAgainPutsInFront) {
    View parent;
    View first;
    View second;
    parent.addSubview(first);
    parent.addSubview(second);
    parent.addSubview(first);
    EXPECT_THAT(parent.subviews(), ElementsAre(&second, &first));
}

TEST(ViewTree, addingElsewhereLeavesTheFormerSuperview) {
    View parent;
    View other;
    View view;
    parent.addSubview(view);
    other.addSubview(view);
    EXPECT_THAT(parent.subviews(), ElementsAre());
    EXPECT_THAT(other.subviews(), ElementsAre(&view));
}

TEST(ViewTree, removingLeavesTheViewAloneAndInvisible) {
    View window;
    View view;
    window.addSubview(view);
    support::showWindow(window, 100, 100);
    view.removeFromSuperview();
    support::settle();
    EXPECT_EQ(view.superview(), nullptr);
    EXPECT_FALSE(view.isVisible()) << "it must not open as a window of its own";
    EXPECT_FALSE(view.isHidden());
    view.removeFromSuperview(); // of none
    EXPECT_EQ(view.superview(), nullptr);
}

TEST(ViewTree, countsNoOtherWidgets) {
    View parent;
    QWidget plain(&parent);
    View inPlain(&plain);
    EXPECT_THAT(parent.subviews(), ElementsAre());
    EXPECT_EQ(inPlain.superview(), nullptr);
}

TEST(ViewTree, aSharedViewGoesWithItsLastReference) {
    View parent;
    QPointer<View> weak;
    {
        const auto view = platform::makeView<View>();
        weak = view.get();
        parent.addSubview(*view);
    }
    EXPECT_THAT(parent.subviews(), ElementsAre()) << "the last reference takes it out at once";
    ASSERT_FALSE(weak.isNull()) << "a handler may still run on it";
    support::flushDeferredDeletes();
    EXPECT_TRUE(weak.isNull());
}

TEST(ViewTree, aSharedViewOutlivesItsSuperview) {
    auto parent = std::make_unique<View>();
    const auto shared = platform::makeView<View>();
    auto* plain = new View(parent.get());
    const QPointer<View> owned = plain;
    const QPointer<View> weak = shared.get();
    parent->addSubview(*shared);
    parent.reset();
    EXPECT_TRUE(owned.isNull()) << "which nobody else owns";
    ASSERT_FALSE(weak.isNull());
    EXPECT_EQ(shared->superview(), nullptr);
}

// --- hidden

TEST(ViewHidden, isNotSaidOfAViewInAnUnshownWindow) {
    View window;
    View view(&window);
    EXPECT_FALSE(window.isHidden());
    EXPECT_FALSE(view.isHidden());
}

TEST(ViewHidden, isNotSaidOfAViewInAHiddenOne) {
    View parent;
    View view;
    parent.addSubview(view);
    parent.setHidden(true);
    EXPECT_TRUE(parent.isHidden());
    EXPECT_FALSE(view.isHidden());
}

TEST(ViewHidden, showsAViewThatIsAddedToAShownSuperview) {
    View window;
    support::showWindow(window, 100, 100);
    View view;
    window.addSubview(view);
    EXPECT_TRUE(view.isVisible());
    EXPECT_FALSE(view.isHidden());
}

TEST(ViewHidden, staysWhenAHiddenViewIsAdded) {
    View window;
    support::showWindow(window, 100, 100);
    View view;
    view.setHidden(true);
    window.addSubview(view);
    EXPECT_FALSE(view.isVisible());
    view.setHidden(false);
    EXPECT_TRUE(view.isVisible());
}

TEST(ViewHidden, staysOverRemovalAndReturn) {
    View window;
    support::showWindow(window, 100, 100);
    View view;
    window.addSubview(view);
    view.setHidden(true);
    view.removeFromSuperview();
    window.addSubview(view);
    EXPECT_TRUE(view.isHidden());
    EXPECT_FALSE(view.isVisible());
}

TEST(ViewHidden, setBeforeTheWindowShowsHoldsWhenItDoes) {
    View window;
    View shown;
    View hidden;
    window.addSubview(shown);
    window.addSubview(hidden);
    hidden.setHidden(true);
    support::showWindow(window, 100, 100);
    EXPECT_TRUE(shown.isVisible());
    EXPECT_FALSE(hidden.isVisible());
}

TEST(ViewHidden, holdsForAViewThatWasMadeInsideItsSuperview) {
    View window;
    View view(&window); // as an interface file makes it
    view.setHidden(true);
    support::showWindow(window, 100, 100);
    EXPECT_FALSE(view.isVisible());
    view.setHidden(false);
    EXPECT_TRUE(view.isVisible());
}

TEST(ViewHidden, showingAViewWithoutASuperviewOpensNoWindow) {
    View view;
    view.setHidden(true);
    view.setHidden(false);
    EXPECT_FALSE(view.isVisible());
    EXPECT_FALSE(view.isHidden());
}

// --- alpha

TEST(ViewAlpha, isOneAndFreeAtFirst) {
    View view;
    EXPECT_EQ(view.alphaValue(), 1);
    EXPECT_EQ(view.graphicsEffect(), nullptr);
}

TEST(ViewAlpha, isFreeAgainBackAtOne) {
    View view;
    view.setAlphaValue(0.5);
    EXPECT_EQ(view.alphaValue(), 0.5);
    EXPECT_NE(view.graphicsEffect(), nullptr);
    view.setAlphaValue(1);
    EXPECT_EQ(view.graphicsEffect(), nullptr);
}

TEST(ViewAlpha, blendsOverlappingChildrenOnce) {
    Patch window(Qt::white);
    window.setFrame(QRectF(0, 0, 40, 40));
    View group(&window);
    group.setFrame(QRectF(0, 0, 40, 40));
    Patch back(Qt::red, &group);
    back.setFrame(QRectF(0, 0, 40, 40));
    Patch front(Qt::blue, &group);
    front.setFrame(QRectF(0, 0, 20, 40));
    group.setAlphaValue(0.5);
    const QImage image = support::painted(window);
    const QColor left = image.pixelColor(10, 20);
    const QColor right = image.pixelColor(30, 20);
    EXPECT_NEAR(left.red(), 128, 2) << "no red of what the blue child covers";
    EXPECT_NEAR(left.green(), 128, 2);
    EXPECT_EQ(left.blue(), 255);
    EXPECT_EQ(right.red(), 255);
    EXPECT_NEAR(right.blue(), 128, 2);
}

TEST(ViewAlpha, ofNoneLeavesNothingToSeeButTheViewInPlace) {
    Patch window(Qt::white);
    window.setFrame(QRectF(0, 0, 40, 40));
    Patch view(Qt::red, &window);
    view.setFrame(QRectF(0, 0, 40, 40));
    view.setAlphaValue(0);
    EXPECT_EQ(support::painted(window).pixelColor(20, 20), QColor(Qt::white));
    EXPECT_EQ(window.hitTest({20, 20}), &view) << "a view of alpha 0 is hit";
}

} // namespace view_test

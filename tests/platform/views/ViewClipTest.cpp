#include "platform/views/ViewFixture.h"

namespace view_test {

// --- clip

TEST(ViewClip, cutsWhatIsSeen) {
    Patch window(Qt::white);
    Patch view(Qt::red);
    window.addSubview(view);
    support::showWindow(window, 40, 40);
    view.setFrame(QRectF(0, 0, 40, 40));
    view.setClip(QRectF(0, 0, 10, 40));
    const QImage image = support::painted(window);
    EXPECT_EQ(image.pixelColor(9, 20), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(10, 20), QColor(Qt::white));
}

TEST(ViewClip, cutsWhatIsHit) {
    View parent;
    parent.setFrame(QRectF(0, 0, 40, 40));
    View view;
    parent.addSubview(view);
    view.setFrame(QRectF(5, 0, 35, 40));
    view.setClip(QRectF(0, 0, 10, 40));
    EXPECT_EQ(parent.hitTest({14.9, 20}), &view);
    EXPECT_EQ(parent.hitTest({15, 20}), &parent) << "the right edge lies outside";
}

TEST(ViewClip, thatIsEmptyLeavesNothing) {
    View window;
    View view;
    window.addSubview(view);
    support::showWindow(window, 40, 40);
    view.setFrame(QRectF(0, 0, 40, 40));
    view.setClip(QRectF(0, 0, 0, 40));
    EXPECT_FALSE(view.isVisible());
    EXPECT_FALSE(view.isHidden()) << "the flag is the view's own";
    EXPECT_EQ(window.hitTest(QPointF(window.geometry().topLeft()) + QPointF(0, 20)), &window);
}

TEST(ViewClip, liftedLeavesTheWholeView) {
    Patch window(Qt::white);
    Patch view(Qt::red);
    window.addSubview(view);
    support::showWindow(window, 40, 40);
    view.setFrame(QRectF(0, 0, 40, 40));
    for (const QRectF& clip : {QRectF(0, 0, 0, 0), QRectF(0, 0, 10, 10)}) {
        view.setClip(clip);
        view.setClip(std::nullopt);
        EXPECT_TRUE(view.isVisible());
        EXPECT_EQ(support::painted(window).pixelColor(39, 39), QColor(Qt::red));
        EXPECT_EQ(window.hitTest(QPointF(window.geometry().topLeft()) + QPointF(39, 39)), &view);
    }
}

TEST(ViewClip, showsNoHiddenView) {
    View window;
    View view;
    window.addSubview(view);
    support::showWindow(window, 40, 40);
    view.setHidden(true);
    view.setClip(QRectF(0, 0, 10, 10));
    view.setClip(std::nullopt);
    EXPECT_FALSE(view.isVisible());
}

TEST(ViewClip, fromEmptyToSomeShowsThatMuch) {
    Patch window(Qt::white);
    Patch view(Qt::red);
    window.addSubview(view);
    support::showWindow(window, 40, 40);
    view.setFrame(QRectF(0, 0, 40, 40));
    view.setClip(QRectF());
    view.setClip(QRectF(30, 0, 10, 40));
    const QImage image = support::painted(window);
    EXPECT_EQ(image.pixelColor(29, 20), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(30, 20), QColor(Qt::red));
}

// --- what ancestors leave of it

TEST(ViewExposedRect, isAllOfItInAWindow) {
    View window;
    window.setFrame(QRectF(10, 10, 40, 50));
    EXPECT_EQ(window.exposedRect(), QRect(0, 0, 40, 50));
}

TEST(ViewExposedRect, isWhatAncestorsLeave) {
    View window;
    window.setFrame(QRectF(0, 0, 100, 100));
    View middle(&window);
    middle.setFrame(QRectF(10, -20, 50, 500));
    View view(&middle);
    view.setFrame(QRectF(-5, 5, 500, 500));
    EXPECT_EQ(view.exposedRect(), QRect(5, 15, 50, 100));
}

TEST(ViewExposedRect, isEmptyOutOfSight) {
    View window;
    window.setFrame(QRectF(0, 0, 100, 100));
    View view(&window);
    view.setFrame(QRectF(0, 100, 50, 50));
    EXPECT_TRUE(view.exposedRect().isEmpty());
}

} // namespace view_test

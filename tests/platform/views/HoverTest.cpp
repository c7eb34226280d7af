#include "platform/views/Button.h"
#include "platform/views/View.h"

#include "support/Application.h"
#include "support/Events.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPainter>

#include <functional>
#include <memory>

using platform::Button;
using platform::View;

namespace {

// Counts how often a window brings what it has painted to the screen.
class Frames final : public QObject {
public:
    explicit Frames(QWidget& window) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::UpdateRequest;
        return false;
    }
    int count = 0;
};

class Clickable final : public View {
public:
    using View::View;
    View* clickTarget() override { return this; }
    View* hitTest(QPointF point) override { return hit ? hit(point) : View::hitTest(point); }
    using View::showsHover;

    std::function<View*(QPointF)> hit;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (showsHover())
            paintHover(painter, rect());
    }
};

class Hover : public testing::Test {
protected:
    Hover() {
        root.addSubview(view);
        view.setFrame(QRectF(50, 20, 50, 30));
        view.addSubview(inner);
        inner.setFrame(QRectF(10, 10, 10, 10));
        support::showWindow(root, 200, 100);
    }
    ~Hover() override { support::leave(root); }

    void paintAnew() {
        root.update();
        support::settle();
    }
    [[nodiscard]] Qt::CursorShape cursor() const { return root.cursor().shape(); }

    View root;
    Clickable view;
    View inner;
};

} // namespace

TEST_F(Hover, showsInTheViewThatAClickActsOn) {
    support::hover(root, {40, 25});
    EXPECT_FALSE(view.showsHover());
    support::hover(root, {55, 25});
    EXPECT_TRUE(view.showsHover());
    support::hover(root, {65, 35}); // a view that passes its presses on
    EXPECT_TRUE(view.showsHover());
    support::hover(root, {100, 25});
    EXPECT_FALSE(view.showsHover());
}

TEST_F(Hover, hasTheHandForACursor) {
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    support::hover(root, {55, 25});
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    support::hover(root, {40, 25});
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Hover, isAFaintTint) {
    const QImage before = support::painted(root);
    support::hover(root, {55, 25});
    const QImage image = support::painted(root);
    EXPECT_EQ(support::inkOf(image), QRect(50, 20, 50, 30));
    EXPECT_LT(image.pixelColor(75, 35).alpha(), 26) << "a tenth";
    support::hover(root, {40, 25});
    EXPECT_EQ(support::painted(root), before);
}

TEST_F(Hover, endsWhenTheMouseLeavesTheWindow) {
    support::hover(root, {55, 25});
    support::leave(root);
    EXPECT_FALSE(view.showsHover());
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    support::hover(root, {56, 25});
    EXPECT_TRUE(view.showsHover()) << "until it comes back";
}

TEST_F(Hover, endsWhenTheWindowHides) {
    support::hover(root, {55, 25});
    root.hide();
    EXPECT_FALSE(view.showsHover());
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Hover, isChosenByTheRootsHitTest) {
    Clickable chooser;
    View left, right;
    Clickable covered;
    chooser.addSubview(covered);
    chooser.hit = [&](QPointF) { return &chooser; };
    covered.setFrame(QRectF(0, 0, 100, 100));
    support::showWindow(chooser, 100, 100);
    support::hover(chooser, {30, 30});
    EXPECT_FALSE(covered.showsHover()) << "the toolkit's own idea of what lies under the mouse";
    EXPECT_TRUE(chooser.showsHover());
    support::leave(chooser);
}

TEST_F(Hover, isNotInADisabledView) {
    view.setEnabled(false);
    support::hover(root, {55, 25});
    EXPECT_FALSE(view.showsHover());
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Hover, goesWithTheViewUnderAMouseThatRests) {
    support::hover(root, {55, 25});
    view.setFrame(QRectF(50, 60, 50, 30));
    paintAnew();
    EXPECT_FALSE(view.showsHover());
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    view.setFrame(QRectF(50, 0, 50, 30));
    paintAnew();
    EXPECT_TRUE(view.showsHover());
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    view.setHidden(true);
    paintAnew();
    EXPECT_FALSE(view.showsHover());
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Hover, findsAViewThatComesUnderAMouseThatRests) {
    support::hover(root, {20, 80});
    Clickable late;
    late.setFrame(QRectF(0, 60, 40, 40));
    root.addSubview(late);
    paintAnew();
    EXPECT_TRUE(late.showsHover());
}

TEST_F(Hover, outlivesTheViewThatShowedIt) {
    auto late = std::make_unique<Clickable>();
    late->setFrame(QRectF(0, 60, 40, 40));
    root.addSubview(*late);
    support::hover(root, {20, 80});
    ASSERT_TRUE(late->showsHover());
    late.reset();
    paintAnew();
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Hover, staysWhereAPressIsHeld) {
    support::hover(root, {55, 25});
    support::press(root, {55, 25});
    support::hover(root, {40, 25});
    EXPECT_TRUE(view.showsHover());
    support::release(root, {40, 25});
    support::settle();
    EXPECT_FALSE(view.showsHover());
}

TEST_F(Hover, makesNoFrameWhereNothingChanges) {
    support::hover(root, {55, 25});
    support::settle();
    Frames frames(root);
    for (int x = 56; x < 90; ++x)
        support::hover(root, {x, 30});
    support::settle();
    EXPECT_EQ(frames.count, 0);
    support::hover(root, {40, 30});
    support::settle();
    EXPECT_EQ(frames.count, 1);
}

// --- buttons

TEST_F(Hover, isInAButtonThatHasAnAction) {
    Button button;
    root.addSubview(button);
    button.setBordered(false);
    button.setFrame(QRectF(0, 60, 40, 40));
    support::settle();
    support::hover(root, {20, 80});
    EXPECT_TRUE(support::inkOf(support::painted(root)).isNull());
    button.setAction([] {});
    support::hover(root, {20, 81});
    EXPECT_EQ(support::inkOf(support::painted(root)), QRect(0, 60, 40, 40));
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    button.setEnabled(false);
    support::hover(root, {20, 80});
    EXPECT_TRUE(support::inkOf(support::painted(root)).isNull());
}

#include "platform/views/ScrollView.h"

#include "support/Application.h"
#include "support/Events.h"

#include <gtest/gtest.h>
#include <string>

using platform::ScrollView;
using platform::View;

namespace {

// Counts what it hears of its exposed rectangle.
class Document final : public View {
public:
    void exposedRectChanged() override { ++changes; }
    int changes = 0;
};

class Scrolling : public testing::Test {
protected:
    Scrolling() {
        scroll.setDocumentView(&document);
        scroll.setFrame(QRectF(0, 0, 200, 100));
        scroll.setDocumentHeight(500);
    }

    double top() const { return document.frame().y(); }

    ScrollView scroll;
    Document document;
};

TEST_F(Scrolling, startsAtTheTop) {
    EXPECT_EQ(scroll.offset(), 0);
    EXPECT_EQ(document.frame(), QRectF(0, 0, 200, 500));
    EXPECT_EQ(document.exposedRect(), QRect(0, 0, 200, 100));
}

TEST_F(Scrolling, movesTheDocument) {
    scroll.scrollTo(120);
    EXPECT_EQ(top(), -120);
    EXPECT_EQ(document.exposedRect(), QRect(0, 120, 200, 100));
}

TEST_F(Scrolling, stopsAtBothEnds) {
    scroll.scrollTo(-10);
    EXPECT_EQ(scroll.offset(), 0);
    scroll.scrollTo(1000);
    EXPECT_EQ(scroll.offset(), 400);
}

TEST_F(Scrolling, standsOnWholePoints) {
    scroll.scrollTo(10.6);
    EXPECT_EQ(scroll.offset(), 11);
    EXPECT_EQ(top(), -11);
}

TEST_F(Scrolling, aDocumentThatFitsDoesNotScroll) {
    scroll.setDocumentHeight(60);
    scroll.scrollTo(10);
    EXPECT_EQ(scroll.offset(), 0);
    EXPECT_EQ(document.frame(), QRectF(0, 0, 200, 100)) << "it fills the view";
}

TEST_F(Scrolling, staysInsideADocumentThatShrinks) {
    scroll.scrollTo(400);
    scroll.setDocumentHeight(250);
    EXPECT_EQ(scroll.offset(), 150);
}

TEST_F(Scrolling, staysInsideWhenTheViewGrows) {
    scroll.scrollTo(400);
    scroll.setFrame(QRectF(0, 0, 300, 200));
    EXPECT_EQ(scroll.offset(), 300);
    EXPECT_EQ(document.frame(), QRectF(0, -300, 300, 500));
}

TEST_F(Scrolling, tellsTheDocumentOfItsExposedRectangle) {
    View inner(&document);
    document.changes = 0;
    scroll.scrollTo(50);
    EXPECT_EQ(document.changes, 1);
}

TEST_F(Scrolling, showsARectangleWithAsLittleScrollingAsItTakes) {
    scroll.scrollToVisible(QRectF(0, 0, 10, 50));
    EXPECT_EQ(scroll.offset(), 0) << "it is in sight";
    scroll.scrollToVisible(QRectF(0, 150, 10, 50));
    EXPECT_EQ(scroll.offset(), 100) << "at the lower edge";
    scroll.scrollToVisible(QRectF(0, 120, 10, 50));
    EXPECT_EQ(scroll.offset(), 100);
    scroll.scrollToVisible(QRectF(0, 30, 10, 50));
    EXPECT_EQ(scroll.offset(), 30) << "at the upper edge";
}

TEST_F(Scrolling, showsTheUpperPartOfARectangleThatIsTooTall) {
    scroll.scrollToVisible(QRectF(0, 150, 10, 300));
    EXPECT_EQ(scroll.offset(), 150);
    scroll.scrollToVisible(QRectF(0, 50, 10, 300));
    EXPECT_EQ(scroll.offset(), 50);
}

TEST_F(Scrolling, showsARectangleOfAViewInTheDocument) {
    View inner(&document);
    inner.setFrame(QRectF(20, 100, 50, 200));
    scroll.setHorizontalInset(12);
    inner.scrollRectToVisible(QRectF(0, 150, 10, 50));
    EXPECT_EQ(scroll.offset(), 200);
    inner.scrollRectToVisible(QRectF(0, 50, 10, 50));
    EXPECT_EQ(scroll.offset(), 150);
    document.scrollRectToVisible(QRectF(0, 10, 10, 10));
    EXPECT_EQ(scroll.offset(), 10);
}

TEST_F(Scrolling, takesAnotherDocumentFromItsTop) {
    View other;
    scroll.scrollTo(100);
    scroll.setDocumentView(&other);
    EXPECT_EQ(document.superview(), nullptr);
    EXPECT_EQ(other.superview(), &scroll);
    EXPECT_EQ(scroll.offset(), 0);
    scroll.setDocumentView(nullptr);
    EXPECT_EQ(other.superview(), nullptr);
    scroll.scrollTo(10);
}

// --- by hand

class ScrollingByHand : public Scrolling {
protected:
    void SetUp() override {
        root.addSubview(scroll);
        support::showWindow(root, 200, 100);
    }
    void TearDown() override { scroll.removeFromSuperview(); }

    View root;
};

TEST_F(ScrollingByHand, goesALineWithANotchOfTheWheel) {
    support::turnWheel(scroll, -120);
    EXPECT_EQ(scroll.offset(), 50);
    support::turnWheel(scroll, -60);
    EXPECT_EQ(scroll.offset(), 75);
    support::turnWheel(scroll, 120);
    EXPECT_EQ(scroll.offset(), 25);
    support::turnWheel(scroll, 120);
    EXPECT_EQ(scroll.offset(), 0);
}

TEST_F(ScrollingByHand, goesByPixelsWithATouchpad) {
    support::scrollPixels(scroll, -17);
    EXPECT_EQ(scroll.offset(), 17);
}

TEST_F(ScrollingByHand, goesWithTheWheelOverTheDocument) {
    support::turnWheel(document, -120);
    EXPECT_EQ(scroll.offset(), 50);
}

struct KeyStep {
    const char* name;
    Qt::Key key;
    double from;
    double to;
};

class ScrollingByKey : public ScrollingByHand, public testing::WithParamInterface<KeyStep> {};

TEST_P(ScrollingByKey, moves) {
    scroll.scrollTo(GetParam().from);
    support::pressKey(scroll, GetParam().key);
    EXPECT_EQ(scroll.offset(), GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, ScrollingByKey,
    testing::Values(KeyStep{"down", Qt::Key_Down, 100, 150}, KeyStep{"up", Qt::Key_Up, 100, 50},
                    KeyStep{"pageDown", Qt::Key_PageDown, 100, 200},
                    KeyStep{"pageUp", Qt::Key_PageUp, 100, 0}, KeyStep{"home", Qt::Key_Home, 100, 0},
                    KeyStep{"end", Qt::Key_End, 100, 400}, KeyStep{"downAtTheEnd", Qt::Key_Down, 400, 400},
                    KeyStep{"other", Qt::Key_A, 100, 100}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(ScrollingByHand, saysWhereItStandsWithABarAtTheTrailingEdge) {
    const QRect ink = support::inkOf(support::painted(scroll));
    EXPECT_EQ(ink.left(), 194);
    EXPECT_EQ(ink.right(), 197);
    EXPECT_LT(ink.bottom(), 50);
    scroll.scrollTo(400);
    EXPECT_EQ(support::inkOf(support::painted(scroll)).bottom(), 97);
}

TEST_F(ScrollingByHand, hasItsBarAtTheLeftWhereReadingEndsThere) {
    root.setLayoutDirection(Qt::RightToLeft);
    scroll.scrollTo(1);
    EXPECT_EQ(support::inkOf(support::painted(scroll)).left(), 2);
}

TEST_F(ScrollingByHand, hasNoBarForADocumentThatFits) {
    scroll.setDocumentHeight(100);
    EXPECT_TRUE(support::inkOf(support::painted(scroll)).isNull());
}

TEST_F(ScrollingByHand, itsBarTakesNoPress) {
    EXPECT_EQ(root.hitTest(QPointF(root.geometry().topLeft()) + QPointF(195, 10)), &document);
}

} // namespace

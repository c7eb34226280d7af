#include "platform/views/Button.h"

#include "support/Application.h"
#include "support/Events.h"

#include <QPainter>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

using platform::Button;
using platform::ButtonCell;
using platform::Image;
using platform::View;

namespace {

Image square(int side, const QColor& color) {
    QImage pixels(side, side, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(color);
    return Image(pixels);
}

// Writes down what its button asks of it.
class CellSpy final : public ButtonCell {
public:
    void highlight(bool flag, const QRectF& rect, Button& view) override {
        highlights.push_back(flag);
        frame = rect;
        button = &view;
    }
    void drawImage(QPainter&, const Image&, const QRectF& rect, Button& view) override {
        ++images;
        frame = rect;
        button = &view;
    }
    QRectF drawTitle(QPainter&, const platform::AttributedString&, const QRectF& rect, Button&) override {
        ++titles;
        return rect;
    }

    std::vector<bool> highlights;
    int images = 0;
    int titles = 0;
    QRectF frame;
    Button* button = nullptr;
};

class Buttons : public testing::Test {
protected:
    void SetUp() override {
        root.addSubview(*button);
        button->setFrame(QRectF(50, 20, 50, 30));
        button->setBordered(false);
        button->setAction([this] { ++clicks; });
        support::showWindow(root, 200, 100);
        button->clearFocus(); // Qt gives it to the first that takes it
    }

    View root;
    std::unique_ptr<Button> button = std::make_unique<Button>();
    int clicks = 0;
};

TEST_F(Buttons, clickWhenReleasedInside) {
    support::press(*button, {25, 15});
    EXPECT_EQ(clicks, 0);
    support::release(*button, {25, 15});
    EXPECT_EQ(clicks, 1);
}

TEST_F(Buttons, dimWhilePressed) {
    support::press(*button, {25, 15});
    EXPECT_EQ(button->alphaValue(), 0.5);
    support::release(*button, {25, 15});
    EXPECT_EQ(button->alphaValue(), 1);
}

TEST_F(Buttons, doNothingWhenReleasedOutside) {
    support::press(*button, {25, 15});
    support::drag(*button, {60, 15});
    EXPECT_EQ(button->alphaValue(), 1) << "no longer pressed";
    support::release(*button, {60, 15});
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(button->alphaValue(), 1);
}

TEST_F(Buttons, arePressedAgainWhenDraggedBackIn) {
    support::press(*button, {25, 15});
    support::drag(*button, {60, 15});
    support::drag(*button, {26, 15});
    EXPECT_EQ(button->alphaValue(), 0.5);
    support::release(*button, {26, 15});
    EXPECT_EQ(clicks, 1);
}

TEST_F(Buttons, doNothingWhenReleasedOutsideWithoutADrag) {
    support::press(*button, {25, 15});
    support::release(*button, {25, 31});
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(button->alphaValue(), 1);
}

TEST_F(Buttons, endAtTheirEdges) {
    support::press(*button, {25, 15});
    support::release(*button, {49, 29});
    EXPECT_EQ(clicks, 1);
    support::press(*button, {25, 15});
    support::release(*button, {50, 15});
    EXPECT_EQ(clicks, 1);
}

TEST_F(Buttons, passNoPressOn) {
    class Superview final : public View {
    public:
        void mouseDown(const platform::MouseEvent&) override { ++presses; }
        int presses = 0;
    } superview;
    Button inner;
    superview.addSubview(inner);
    support::showWindow(superview, 50, 50);
    inner.setFrame(QRectF(0, 0, 50, 50));
    support::click(inner);
    EXPECT_EQ(superview.presses, 0);
}

TEST_F(Buttons, withoutAnActionDoNothing) {
    button->setAction(nullptr);
    support::click(*button);
    EXPECT_EQ(button->alphaValue(), 1);
}

TEST_F(Buttons, mayEndInTheirAction) {
    button->setAction([this] {
        button.reset();
        ++clicks;
    });
    support::click(*button);
    EXPECT_EQ(clicks, 1);
    support::click(root, {75, 35});
    EXPECT_EQ(clicks, 1);
}

TEST_F(Buttons, mayEndInTheirActionByKey) {
    button->setFocus();
    button->setAction([this] {
        button.release()->deleteLater();
        ++clicks;
    });
    support::pressKey(*button, Qt::Key_Space);
    EXPECT_EQ(clicks, 1);
}

TEST_F(Buttons, mayReplaceTheirActionInIt) {
    button->setAction([this, big = std::string(1000, 'x')] {
        button->setAction(nullptr);
        clicks += static_cast<int>(big.size());
    });
    support::click(*button);
    EXPECT_EQ(clicks, 1000);
}

class ButtonKeys : public Buttons, public testing::WithParamInterface<Qt::Key> {};

TEST_P(ButtonKeys, click) {
    button->setFocus();
    support::pressKey(*button, GetParam());
    EXPECT_EQ(clicks, 1);
}

INSTANTIATE_TEST_SUITE_P(Keyboard, ButtonKeys, testing::Values(Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter));

TEST_F(Buttons, leaveOtherKeysToTheSuperview) {
    class Superview final : public View {
    public:
        int keys = 0;

    protected:
        void keyPressEvent(QKeyEvent*) override { ++keys; }
    } superview;
    Button inner;
    int innerClicks = 0;
    inner.setAction([&] { ++innerClicks; });
    superview.addSubview(inner);
    support::showWindow(superview, 50, 50);
    inner.setFocus();
    support::pressKey(inner, Qt::Key_Escape);
    EXPECT_EQ(superview.keys, 1);
    EXPECT_EQ(innerClicks, 0);
}

TEST_F(Buttons, clickOnceForAHeldKey) {
    button->setFocus();
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, {}, QStringLiteral(" "), true);
    QCoreApplication::sendEvent(button.get(), &held);
    EXPECT_EQ(clicks, 0);
}

TEST_F(Buttons, takeTheKeyboardByTabAndNotByClick) {
    support::click(*button);
    EXPECT_FALSE(button->hasFocus());
    EXPECT_EQ(button->focusPolicy(), Qt::TabFocus);
}

TEST_F(Buttons, clickWhenAnAssistiveProgramPressesThem) {
    button->performAccessibleAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1);
    button->performAccessibleAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(clicks, 1);
}

// --- the cell

TEST_F(Buttons, drawThroughTheirCell) {
    const auto cell = std::make_shared<CellSpy>();
    button->setCell(cell);
    EXPECT_EQ(&button->cell(), cell.get());
    button->setImage(square(10, Qt::red));
    support::painted(*button);
    EXPECT_GE(cell->images, 1);
    EXPECT_GE(cell->titles, 1);
    EXPECT_EQ(cell->frame, QRectF(0, 0, 50, 30)) << "in the button's own coordinates";
    EXPECT_EQ(cell->button, button.get());
}

TEST_F(Buttons, askTheirCellForNoImageThatIsMissing) {
    const auto cell = std::make_shared<CellSpy>();
    button->setCell(cell);
    support::painted(*button);
    EXPECT_EQ(cell->images, 0);
}

TEST_F(Buttons, tellTheirCellOfEachChangeOfThePressOnce) {
    const auto cell = std::make_shared<CellSpy>();
    button->setCell(cell);
    support::press(*button, {25, 15});
    support::drag(*button, {26, 15});
    support::drag(*button, {60, 15});
    support::drag(*button, {61, 15});
    support::drag(*button, {26, 15});
    support::release(*button, {26, 15});
    EXPECT_THAT(cell->highlights, testing::ElementsAre(true, false, true, false));
    EXPECT_EQ(button->alphaValue(), 1) << "the look of a press is the cell's alone";
}

TEST_F(Buttons, shareOneCellUntilTheyAreGivenTheirOwn) {
    const Button other;
    EXPECT_EQ(other.sharedCell(), button->sharedCell());
    button->setCell(std::make_shared<ButtonCell>());
    EXPECT_NE(other.sharedCell(), button->sharedCell());
}

TEST_F(Buttons, haveTheirImageUntintedInTheMiddle) {
    button->setImage(square(10, Qt::red));
    const QImage image = support::painted(*button);
    EXPECT_EQ(image.pixelColor(20, 10), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(29, 19), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(19, 10).alpha(), 0);
    EXPECT_EQ(image.pixelColor(30, 19).alpha(), 0);
    EXPECT_EQ(image.pixelColor(20, 9).alpha(), 0);
    EXPECT_EQ(image.pixelColor(29, 20).alpha(), 0);
}

TEST_F(Buttons, withoutABorderPaintNothingOfTheirOwn) {
    EXPECT_TRUE(support::inkOf(support::painted(*button)).isNull());
    button->setBordered(true);
    EXPECT_EQ(support::inkOf(support::painted(*button)), QRect(0, 0, 50, 30));
}

TEST_F(Buttons, withAnUnknownImageNameHaveNone) {
    button->setImage(square(10, Qt::red));
    button->setImageName(QStringLiteral("no such image"));
    EXPECT_TRUE(button->image().isNull());
}

TEST_F(Buttons, showTheKeyboardOnlyWithAFocusRing) {
    const auto ink = [this] { return support::inkOf(support::painted(*button)); };
    EXPECT_TRUE(ink().isNull());
    root.activateWindow();
    support::settle();
    button->setFocus(Qt::OtherFocusReason);
    ASSERT_TRUE(button->hasFocus());
    EXPECT_TRUE(ink().isNull()) << "it was not a key that brought it there";
    button->clearFocus();
    button->setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(ink().isNull());
    button->setFocusRingType(Button::FocusRingType::None);
    EXPECT_TRUE(ink().isNull());
}

TEST(ButtonTitle, isDrawnInTheMiddleByTheStandardCell) {
    View root;
    Button button;
    root.addSubview(button);
    root.setFrame(QRectF(0, 0, 200, 40));
    button.setFrame(QRectF(0, 0, 200, 40));
    button.setBordered(false);
    QFont font;
    font.setPixelSize(20);
    button.setAttributedTitle({QStringLiteral("III"), font});
    const QRect ink = support::inkOf(support::painted(button));
    ASSERT_FALSE(ink.isNull());
    EXPECT_NEAR(ink.left(), 199 - ink.right(), 3);
}

} // namespace

#include "views/rows/TodayAddTableCellView.h"

#include "platform/views/InterfaceFile.h"
#include "support/Application.h"
#include "support/Events.h"
#include "views/rows/RowInterfaceFiles.h"
#include "views/rows/RowTest.h"

#include <QApplication>

#include <array>
#include <string>

namespace rows {
namespace {

const QColor resting = QColor::fromRgbF(1, 1, 1, 0.75F), pressed = QColor::fromRgbF(1, 1, 1, 0.5F);

class AddRowDelegate final : public TodayAddTableViewCellDelegate {
public:
    void todayAddTableViewCellClickAddButton() override { ++buttonClicks; }
    void todayAddTableViewCellClickContentCell() override {
        ++contentClicks;
        if (caption)
            colorDuringCall = caption->textColor();
    }

    int buttonClicks = 0, contentClicks = 0;
    const platform::Label* caption = nullptr;
    QColor colorDuringCall;
};

// Receives the presses that a row passes to its superview.
class Listener final : public platform::View {
public:
    void mouseDown(const platform::MouseEvent&) override { presses.push_back(row->titleLabel->textColor()); }
    void mouseUp(const platform::MouseEvent&) override { ++releases; }

    std::shared_ptr<TodayAddTableCellView> row;
    std::vector<QColor> presses; // the caption's colour at each
    int releases = 0;
};

class AddRowTest : public RowTest, public testing::WithParamInterface<Qt::LayoutDirection> {
protected:
    AddRowTest() {
        QApplication::setLayoutDirection(GetParam());
        row = makeAddRow();
        row->titleLabel->setStringValue(QStringLiteral("New transaction"));
        row->delegate = delegate;
        showStage();
    }

    [[nodiscard]] platform::View* hitAt(QPointF point) const {
        return row->hitTest(point + QPointF(row->pos()));
    }
    [[nodiscard]] QPoint inButton() const { return placeOn(*row, *row->addButton).center(); }
    [[nodiscard]] QPoint inCaption() const { return placeOn(*row, *row->titleLabel).center(); }
    // A point between the button and the caption, where only the click view is.
    [[nodiscard]] QPoint inClickView() const {
        return {GetParam() == Qt::LeftToRight ? 44 : row->width() - 45, 25};
    }
    [[nodiscard]] QColor color() const { return row->titleLabel->textColor(); }

    std::shared_ptr<TodayAddTableCellView> row;
    std::shared_ptr<AddRowDelegate> delegate = std::make_shared<AddRowDelegate>();
};

TEST_P(AddRowTest, theInterfaceFileHoldsOneRow) {
    registerRowInterfaceFiles(); // once more
    const auto views = platform::InterfaceFile::named(QStringLiteral("TodayAddTableCellView"))->instantiate();
    ASSERT_EQ(views.size(), 1U);
    const auto fresh = std::dynamic_pointer_cast<TodayAddTableCellView>(views[0]);
    ASSERT_TRUE(fresh);
    EXPECT_FALSE(fresh->delegate);
    EXPECT_EQ(fresh->frame().height(), 50);
    EXPECT_FALSE(fresh->addButton->image().isNull());
}

TEST_P(AddRowTest, wakesWithACaptionAtRest) {
    row->titleLabel->setTextColor(Qt::red);
    row->awakeFromNib();
    EXPECT_EQ(color(), resting);
}

// --- hitTest

TEST_P(AddRowTest, aHitOnTheButtonIsTheButtons) {
    EXPECT_EQ(hitAt(inButton()), row->addButton.get());
}

TEST_P(AddRowTest, everyOtherHitIsTheClickViews) {
    for (const QPoint point : {inCaption(), inClickView(), QPoint(1, 1), QPoint(318, 48)})
        EXPECT_EQ(hitAt(point), row->clickView.get()) << point.x() << ", " << point.y();
}

TEST_P(AddRowTest, aPointOutsideIsTheClickViewsToo) {
    EXPECT_EQ(hitAt(QPointF(-500, 900)), row->clickView.get());
}

TEST_P(AddRowTest, withoutAButtonAPointOutsideHitsNothing) {
    row->addButton = nullptr;
    EXPECT_EQ(hitAt(QPointF(-500, 900)), nullptr);
}

TEST_P(AddRowTest, withoutAButtonAPointInsideIsTheClickViews) {
    row->addButton = nullptr;
    EXPECT_EQ(hitAt(inClickView()), row->clickView.get());
    EXPECT_EQ(hitAt(inCaption()), row->clickView.get());
}

// --- the button

TEST_P(AddRowTest, aClickOnTheButtonReportsItOnceAndNoClickOnTheRow) {
    support::click(*row, inButton());
    EXPECT_EQ(delegate->buttonClicks, 1);
    EXPECT_EQ(delegate->contentClicks, 0);
}

TEST_P(AddRowTest, aPressOnTheButtonLeavesTheCaptionAsItIs) {
    support::press(*row, inButton());
    EXPECT_EQ(color(), resting);
    EXPECT_EQ(row->addButton->alphaValue(), 0.5); // its own pressed look
    support::release(*row, inButton());
    EXPECT_EQ(color(), resting);
    EXPECT_EQ(row->addButton->alphaValue(), 1.0);
}

TEST_P(AddRowTest, aPressOnTheButtonThatIsReleasedElsewhereReportsNothing) {
    support::press(*row, inButton());
    support::release(*row, inCaption());
    EXPECT_EQ(delegate->buttonClicks, 0);
    EXPECT_EQ(delegate->contentClicks, 0);
}

TEST_P(AddRowTest, theButtonsActionReportsAClickOnIt) {
    row->addButtonClick();
    EXPECT_EQ(delegate->buttonClicks, 1);
    EXPECT_EQ(delegate->contentClicks, 0);
    EXPECT_EQ(color(), resting);
}

// --- the rest of the row

TEST_P(AddRowTest, aClickAnywhereElseReportsOneOnReleaseAndDimsTheCaptionTillThen) {
    int clicks = 0;
    for (const QPoint point : {inCaption(), inClickView(), QPoint(2, 2), QPoint(317, 47)}) {
        support::press(*row, point);
        EXPECT_EQ(color(), pressed);
        EXPECT_EQ(delegate->contentClicks, clicks);
        support::release(*row, point);
        EXPECT_EQ(color(), resting);
        EXPECT_EQ(delegate->contentClicks, ++clicks);
    }
    EXPECT_EQ(delegate->buttonClicks, 0);
}

TEST_P(AddRowTest, aPressThatIsReleasedOutsideIsAClick) {
    support::press(*row, inCaption());
    support::drag(*row, QPoint(500, 80));
    EXPECT_EQ(color(), pressed);
    support::release(*row, QPoint(500, 80));
    EXPECT_EQ(color(), resting);
    EXPECT_EQ(delegate->contentClicks, 1);
}

TEST_P(AddRowTest, aPressThatIsCancelledIsNoClickAndBrightensTheCaption) {
    support::press(*row, inCaption());
    row->setEnabled(false);
    EXPECT_EQ(color(), resting);
    support::release(*row, inCaption());
    EXPECT_EQ(delegate->contentClicks, 0);
}

TEST_P(AddRowTest, aPressOnARowThatIsTakenOutIsAClickOnWhatWasPressed) {
    support::press(*row, inButton());
    row->removeFromSuperview();
    support::release(stage, QPoint(20, 40) + inButton());
    EXPECT_EQ(delegate->buttonClicks, 1);
    stage.addSubview(*row);
    support::press(*row, inCaption());
    row->removeFromSuperview();
    support::release(stage, QPoint(20, 40) + inCaption());
    EXPECT_EQ(delegate->contentClicks, 1);
    EXPECT_EQ(color(), resting);
}

TEST_P(AddRowTest, aPressThatIsReleasedOverTheButtonIsAClickOnTheRow) {
    support::press(*row, inCaption());
    support::release(*row, inButton());
    EXPECT_EQ(delegate->contentClicks, 1);
    EXPECT_EQ(delegate->buttonClicks, 0);
}

TEST_P(AddRowTest, theDelegateHearsBeforeTheCaptionBrightens) {
    delegate->caption = row->titleLabel.get();
    support::click(*row, inCaption());
    EXPECT_EQ(delegate->colorDuringCall, pressed);
    EXPECT_EQ(color(), resting);
}

TEST_P(AddRowTest, thePressIsPassedOnFirstAndTheReleaseIsNot) {
    Listener listener;
    listener.row = makeAddRow();
    listener.addSubview(*listener.row);
    listener.row->mouseDown({});
    ASSERT_EQ(listener.presses.size(), 1U);
    EXPECT_EQ(listener.presses[0], resting);
    EXPECT_EQ(listener.row->titleLabel->textColor(), pressed);
    listener.row->mouseUp({});
    EXPECT_EQ(listener.releases, 0);
    EXPECT_EQ(listener.row->titleLabel->textColor(), resting);
    listener.row.reset(); // before its superview
}

TEST_P(AddRowTest, withoutADelegateClicksChangeTheColourOnly) {
    row->delegate = nullptr;
    support::press(*row, inCaption());
    EXPECT_EQ(color(), pressed);
    support::release(*row, inCaption());
    EXPECT_EQ(color(), resting);
    support::press(*row, inButton());
    EXPECT_EQ(color(), resting);
    support::release(*row, inButton());
    EXPECT_EQ(color(), resting);
}

TEST_P(AddRowTest, theRightMouseButtonDoesNothing) {
    support::press(*row, inCaption(), Qt::RightButton);
    EXPECT_EQ(color(), resting);
    support::release(*row, inCaption(), Qt::RightButton);
    EXPECT_EQ(delegate->contentClicks, 0);
}

// --- layout and keyboard

TEST_P(AddRowTest, itsPartsStayApartAndInsideAtAnyWidth) {
    for (const int width : {240, 320, 600}) {
        row->setFrame(QRectF(20, 40, width, 50));
        const QRect button = placeOn(*row, *row->addButton), caption = placeOn(*row, *row->titleLabel);
        const bool mirrored = GetParam() == Qt::RightToLeft;
        EXPECT_EQ(button, QRect(mirrored ? width - 38 : 0, 6, 38, 38));
        EXPECT_EQ(caption, QRect(mirrored ? 0 : 50, 10, width - 50, 30));
        EXPECT_EQ(placeOn(*row, *row->clickView), row->rect());
    }
}

TEST_P(AddRowTest, theButtonIsInFrontOfTheClickView) {
    EXPECT_EQ(row->subviews().front(), row->clickView.get());
    EXPECT_EQ(row->subviews().back(), row->addButton.get());
}

TEST_P(AddRowTest, keysOnTheButtonClickItAndNotTheRow) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        support::pressKey(*row->addButton, key);
    EXPECT_EQ(delegate->buttonClicks, 3);
    EXPECT_EQ(delegate->contentClicks, 0);
}

TEST_P(AddRowTest, keysOnTheRowClickIt) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_A})
        support::pressKey(*row, key);
    EXPECT_EQ(delegate->contentClicks, 3);
    EXPECT_EQ(delegate->buttonClicks, 0);
}

INSTANTIATE_TEST_SUITE_P(Directions, AddRowTest, testing::Values(Qt::LeftToRight, Qt::RightToLeft),
                         [](const auto& direction) {
                             return std::string(direction.param == Qt::LeftToRight ? "LeftToRight"
                                                                                   : "RightToLeft");
                         });

} // namespace
} // namespace rows

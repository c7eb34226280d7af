#include "support/Application.h"
#include "support/Events.h"
#include "views/rows/RowTest.h"

#include <QApplication>

#include <array>
#include <functional>

namespace rows {
namespace {

// Receives the presses that a row passes to its superview.
class Listener final : public platform::View {
public:
    void mouseDown(const platform::MouseEvent&) override { ++presses; }
    void mouseUp(const platform::MouseEvent&) override { ++releases; }

    int presses = 0, releases = 0;
};

class RowClicksTest : public RowTest, public testing::WithParamInterface<Qt::LayoutDirection> {
protected:
    RowClicksTest() {
        QApplication::setLayoutDirection(GetParam());
        row = makeRow();
        row->configureForItem(item(), 60);
        row->delegate = delegate;
        showStage();
    }

    // The view that a point of the row hits.
    [[nodiscard]] platform::View* hitAt(QPointF point) const {
        return row->hitTest(point + QPointF(row->pos()));
    }
    [[nodiscard]] platform::View* hitIn(const platform::View& view) const {
        return hitAt(QRectF(placeOn(*row, view)).center());
    }
    [[nodiscard]] double alpha() const { return row->cellContentView->alphaValue(); }
    [[nodiscard]] QPoint middle() const { return row->rect().center(); }
    // A point of the content that stays visible in an open row.
    [[nodiscard]] QPoint inPicture() const { return placeOn(*row, *row->transactionImageView).center(); }
    void open() {
        row->cellClicked();
        finishSlide();
        delegate->opened.clear();
    }

    std::shared_ptr<TodayTableCellView> row;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
};

// --- hitTest

TEST_P(RowClicksTest, aHitOnASubviewOfTheContentIsTheContents) {
    platform::View* content = row->cellContentView.get();
    EXPECT_EQ(hitIn(*row->transactionImageView), content);
    EXPECT_EQ(hitIn(*row->titleLabel), content);
    EXPECT_EQ(hitIn(*row->subtitleLabel), content);
    EXPECT_EQ(hitIn(*row->transactionTypeImageView), content);
    EXPECT_EQ(hitIn(*row->sumLabel), content);
    row->sumBackgroundBox->setHidden(true);
    row->sumLabel->setHidden(true);
    EXPECT_EQ(hitIn(*row->sumBackgroundView), content);
}

TEST_P(RowClicksTest, aHitOnTheContentBesideItsSubviewsIsTheContents) {
    const QRect picture = placeOn(*row, *row->transactionImageView);
    const int x = GetParam() == Qt::LeftToRight ? picture.right() + 5 : picture.left() - 5;
    EXPECT_EQ(hitAt(QPointF(x, 25)), row->cellContentView.get());
}

TEST_P(RowClicksTest, aHitOnTheBadgeBesideItsTextIsTheBoxs) {
    const QRect badge = placeOn(*row, *row->sumBackgroundView);
    EXPECT_EQ(hitAt(badge.topLeft() + QPoint(4, 4)), row->sumBackgroundBox.get());
}

TEST_P(RowClicksTest, aPointOutsideTheRowHitsNothing) {
    for (const QPointF point : {QPointF(-1, 25), QPointF(320, 25), QPointF(160, -1), QPointF(160, 50)})
        EXPECT_EQ(hitAt(point), nullptr) << point.x() << ", " << point.y();
    EXPECT_NE(hitAt(QPointF(0, 0)), nullptr);
    EXPECT_NE(hitAt(QPointF(319, 49)), nullptr);
}

TEST_P(RowClicksTest, aRowWithoutContentAndWithoutSuperviewHitsNothing) {
    row->removeFromSuperview();
    row->cellContentView->setHidden(true);
    ASSERT_EQ(hitAt(QPointF(160, 25)), row.get());
    row->cellContentView = nullptr; // absent as the row's superview is
    EXPECT_EQ(hitAt(QPointF(160, 25)), nullptr);
}

TEST_P(RowClicksTest, aClosedRowHitsNoButton) {
    for (int x = 0; x < 320; x += 3)
        for (int y = 0; y < 50; y += 7)
            for (const platform::View* button : buttonsOf(*row))
                EXPECT_NE(hitAt(QPointF(x, y)), button) << x << ", " << y;
}

TEST_P(RowClicksTest, anOpenRowHitsEachButtonInItsMiddle) {
    open();
    for (platform::View* button : buttonsOf(*row))
        EXPECT_EQ(hitIn(*button), button);
}

TEST_P(RowClicksTest, anOpenRowHitsItsContentUpToTheButtons) {
    open();
    const bool mirrored = GetParam() == Qt::RightToLeft;
    const auto fromLeadingEdge = [&](double x) { return QPointF(mirrored ? 319.5 - x : x + 0.5, 25); };
    EXPECT_EQ(hitAt(fromLeadingEdge(124)), row->cellContentView.get());
    EXPECT_EQ(hitAt(fromLeadingEdge(125)), buttonsOf(*row)[0]);
}

TEST_P(RowClicksTest, halfOpenARowHitsOnlyTheButtonsThatItShows) {
    row->cellClicked();
    queue.advance(100ms);
    const auto buttons = buttonsOf(*row);
    EXPECT_EQ(hitIn(*buttons[3]), buttons[3]);
    EXPECT_EQ(hitIn(*buttons[2]), buttons[2]);
    EXPECT_EQ(hitIn(*buttons[1]), row->cellContentView.get());
    EXPECT_EQ(hitIn(*buttons[0]), row->cellContentView.get());
}

TEST_P(RowClicksTest, theButtonsOfAClosingRowTakeNoPress) {
    const auto buttons = buttonsOf(*row);
    const std::array<std::function<void()>, 3> closings{
        [&] { row->cellClicked(); }, [&] { row->collapseCell(); },
        [&] { row->buttonsPanelUserClickAction(TodayTransactionAction::Later(0)); }};
    for (const auto& close : closings) {
        open();
        close();
        delegate->actions.clear();
        for (int elapsed = 0; elapsed < 100; elapsed += 20) {
            for (const platform::View* button : buttons)
                EXPECT_NE(hitIn(*button), button) << elapsed;
            support::click(*buttons[3]);
            EXPECT_FALSE(row->isExpanded()) << "nor does the row behind them";
            queue.advance(20ms);
        }
        EXPECT_TRUE(delegate->actions.empty());
        EXPECT_EQ(buttons[3]->alphaValue(), 1);
        finishSlide();
    }
    open();
    support::click(*buttons[3]);
    EXPECT_EQ(delegate->actions.size(), 1U);
}

TEST_P(RowClicksTest, aButtonThatIsHeldWhileTheRowStartsToCloseIsNotPressed) {
    open();
    support::press(*buttonsOf(*row)[3], {25, 25});
    row->collapseCell();
    EXPECT_EQ(buttonsOf(*row)[3]->alphaValue(), 1);
    support::release(*buttonsOf(*row)[3], {25, 25});
    EXPECT_TRUE(delegate->actions.empty());
}

// --- press and release

TEST_P(RowClicksTest, aPressDimsTheContentUntilTheRelease) {
    support::press(*row, middle());
    EXPECT_EQ(alpha(), 0.5);
    EXPECT_FALSE(row->isExpanded());
    EXPECT_TRUE(queue.isIdle());
    support::release(*row, middle());
    EXPECT_EQ(alpha(), 1.0);
    EXPECT_TRUE(row->isExpanded());
    EXPECT_EQ(delegate->opened.size(), 1U);
}

TEST_P(RowClicksTest, aPressThatIsReleasedOutsideTheRowTogglesIt) {
    support::press(*row, middle());
    support::drag(*row, QPoint(160, 90));
    EXPECT_EQ(alpha(), 0.5);
    support::release(*row, QPoint(160, 90));
    EXPECT_EQ(alpha(), 1.0);
    EXPECT_TRUE(row->isExpanded());
}

TEST_P(RowClicksTest, aPressThatIsReleasedOverAButtonIsTheRowsAlone) {
    open();
    support::press(*row, inPicture());
    support::release(*row, placeOn(*row, *buttonsOf(*row)[0]).center());
    EXPECT_FALSE(row->isExpanded());
    EXPECT_TRUE(delegate->actions.empty());
}

TEST_P(RowClicksTest, theContentIsBrightAgainWhenTheDelegateHears) {
    double then = 0;
    delegate->during = [&] { then = alpha(); };
    support::click(*row, middle());
    EXPECT_EQ(then, 1.0);
}

TEST_P(RowClicksTest, aPressThatIsCancelledBrightensTheContentAndDoesNotToggle) {
    support::press(*row, middle());
    row->setEnabled(false);
    EXPECT_EQ(alpha(), 1.0);
    support::release(*row, middle());
    EXPECT_FALSE(row->isExpanded());
}

TEST_P(RowClicksTest, aPressBesideTheRowDoesNotToggleIt) {
    support::press(*row, QPoint(160, 90));
    support::release(*row, middle());
    EXPECT_FALSE(row->isExpanded());
    EXPECT_EQ(alpha(), 1.0);
}

TEST_P(RowClicksTest, neitherPressNorReleaseIsPassedOn) {
    Listener listener;
    const auto inner = makeRow();
    listener.addSubview(*inner);
    inner->mouseDown({QPointF(30, 60)});
    inner->mouseUp({QPointF(30, 60)});
    EXPECT_EQ(listener.presses, 0);
    EXPECT_EQ(listener.releases, 0);
    EXPECT_TRUE(inner->isExpanded());
}

TEST_P(RowClicksTest, aClickAnywhereOnTheContentTogglesTheRow) {
    const QPoint edgeOfBadge = placeOn(*row, *row->sumBackgroundView).topLeft() + QPoint(4, 4);
    const std::array places{placeOn(*row, *row->transactionImageView).center(),
                            placeOn(*row, *row->titleLabel).center(),
                            placeOn(*row, *row->subtitleLabel).center(),
                            placeOn(*row, *row->transactionTypeImageView).center(),
                            placeOn(*row, *row->sumLabel).center(),
                            edgeOfBadge,
                            QPoint(1, 1),
                            QPoint(318, 48)};
    for (const QPoint place : places) {
        support::press(*row, place);
        EXPECT_EQ(alpha(), 0.5) << place.x() << ", " << place.y();
        support::release(*row, place);
        EXPECT_TRUE(row->isExpanded()) << place.x() << ", " << place.y();
        finishSlide();
        row->collapseCell();
        finishSlide();
    }
    EXPECT_EQ(delegate->opened.size(), places.size());
}

TEST_P(RowClicksTest, aClickOnTheContentOfAnOpenRowClosesIt) {
    open();
    support::click(*row, inPicture());
    EXPECT_FALSE(row->isExpanded());
    EXPECT_TRUE(delegate->opened.empty());
}

TEST_P(RowClicksTest, otherMouseButtonsDoNothing) {
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        support::press(*row, middle(), button);
        EXPECT_EQ(alpha(), 1.0);
        support::release(*row, middle(), button);
        EXPECT_FALSE(row->isExpanded());
    }
}

TEST_P(RowClicksTest, aClickOnAButtonReportsItsActionOnce) {
    const std::array expected{TodayTransactionAction::Paid(), TodayTransactionAction::Later(0),
                              TodayTransactionAction::Info(), TodayTransactionAction::Delete(false)};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (!row->isExpanded())
            open();
        delegate->actions.clear();
        support::click(*buttonsOf(*row)[i]);
        ASSERT_EQ(delegate->actions.size(), 1U) << i;
        EXPECT_EQ(delegate->actions[0], expected[i]) << i;
        EXPECT_EQ(alpha(), 1.0);
        finishSlide();
    }
    EXPECT_TRUE(delegate->opened.empty());
}

TEST_P(RowClicksTest, aDoubleClickIsTwoClicks) {
    support::doubleClick(*row, middle());
    EXPECT_EQ(delegate->opened.size(), 1U);
    EXPECT_FALSE(row->isExpanded());
    finishSlide();
    EXPECT_FALSE(row->sumLabel->isHidden());
}

TEST_P(RowClicksTest, theSecondPressOfADoubleClickTakesNoButtonThatCameUnderIt) {
    delegate->during = [this] { finishSlide(); }; // as a slide that is over before the second press
    support::doubleClick(*row, placeOn(*row, *buttonsOf(*row)[3]).center());
    EXPECT_TRUE(row->isExpanded());
    EXPECT_TRUE(delegate->actions.empty());
}

TEST_P(RowClicksTest, noFurtherClickOfASeriesPressesAButtonThatCameUnderIt) {
    const QPoint place = placeOn(*row, *buttonsOf(*row)[3]).center();
    support::click(*row, place);
    for (int i = 0; i < 4; ++i) {
        finishSlide();
        support::clickAfter(200ms, *row, place);
    }
    EXPECT_TRUE(row->isExpanded());
    EXPECT_TRUE(delegate->actions.empty());
    support::click(*row, place);
    EXPECT_EQ(delegate->actions.size(), 1U) << "a click of its own is meant for it";
}

INSTANTIATE_TEST_SUITE_P(Directions, RowClicksTest, testing::Values(Qt::LeftToRight, Qt::RightToLeft),
                         [](const auto& direction) {
                             return std::string(direction.param == Qt::LeftToRight ? "LeftToRight"
                                                                                   : "RightToLeft");
                         });

// --- the keyboard

class RowKeysTest : public RowTest {};

TEST_F(RowKeysTest, spaceReturnAndEnterToggle) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    const auto delegate = std::make_shared<RecordingDelegate>();
    row->delegate = delegate;
    showStage();
    std::size_t opened = 0;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        support::pressKey(*row, key);
        EXPECT_TRUE(row->isExpanded());
        EXPECT_EQ(delegate->opened.size(), ++opened);
        finishSlide();
        support::pressKey(*row, key);
        EXPECT_FALSE(row->isExpanded());
        finishSlide();
    }
    support::pressKey(*row, Qt::Key_A);
    EXPECT_FALSE(row->isExpanded());
}

TEST_F(RowKeysTest, theKeyboardReachesTheButtonsOfAnOpenRowOnly) {
    const auto row = makeRow();
    row->configureForItem(item(), 60);
    showStage();
    stage.activateWindow();
    row->setFocus();
    EXPECT_EQ(stage.focusWidget(), row.get());
    support::pressKey(*row, Qt::Key_Tab);
    EXPECT_EQ(stage.focusWidget(), row.get()); // there is nothing else
    row->cellClicked();
    finishSlide();
    for (const platform::View* button : buttonsOf(*row)) {
        support::pressKey(*stage.focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(stage.focusWidget(), button);
    }
    row->collapseCell();
    finishSlide();
    EXPECT_EQ(stage.focusWidget(), row.get());
}

TEST_F(RowKeysTest, theKeyboardGoesFromAButtonToTheRowThatStartsToClose) {
    const auto row = makeRow();
    const auto next = makeRow(); // the toolkit would take the keyboard to it
    row->configureForItem(item(), 60);
    const auto delegate = std::make_shared<RecordingDelegate>();
    row->delegate = delegate;
    showStage();
    stage.activateWindow();
    row->cellClicked();
    finishSlide();
    buttonsOf(*row)[3]->setFocus(Qt::TabFocusReason);
    row->collapseCell();
    EXPECT_EQ(stage.focusWidget(), row.get());
    support::pressKey(*buttonsOf(*row)[3], Qt::Key_Space);
    EXPECT_TRUE(delegate->actions.empty());
}

} // namespace
} // namespace rows

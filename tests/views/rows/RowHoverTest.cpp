// Where the mouse shows that a click does something.
#include "support/Application.h"
#include "support/Events.h"
#include "views/rows/RowTest.h"

#include <QApplication>
#include <QImage>

namespace rows {
namespace {

class RowHoverTest : public RowTest, public testing::WithParamInterface<Qt::LayoutDirection> {
protected:
    RowHoverTest() {
        QApplication::setLayoutDirection(GetParam());
        row = makeRow();
        row->configureForItem(item(), 60);
        showStage();
    }
    ~RowHoverTest() override {
        support::leave(stage);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }

    [[nodiscard]] Qt::CursorShape cursor() const { return stage.cursor().shape(); }
    // Where the tint is, in the row's coordinates: what differs from the row as it looks without the mouse.
    [[nodiscard]] QRect tintAt(QPoint point) {
        support::leave(stage);
        support::settle();
        const QImage without = support::painted(*row);
        support::hover(*row, point);
        support::settle();
        const QImage with = support::painted(*row);
        QRect tint;
        for (int y = 0; y < with.height(); ++y)
            for (int x = 0; x < with.width(); ++x)
                if (with.pixel(x, y) != without.pixel(x, y))
                    tint |= QRect(x, y, 1, 1);
        return tint;
    }
    [[nodiscard]] QPoint inPicture() const { return placeOn(*row, *row->transactionImageView).center(); }
    [[nodiscard]] QRect button(std::size_t place) const { return placeOn(*row, *buttonsOf(*row)[place]); }

    std::shared_ptr<TodayTableCellView> row;
};

TEST_P(RowHoverTest, isInTheWholeRow) {
    EXPECT_EQ(tintAt(row->rect().center()), QRect(0, 1, 320, 47));
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    EXPECT_EQ(tintAt(placeOn(*row, *row->sumLabel).center()), QRect(0, 1, 320, 47));
}

TEST_P(RowHoverTest, isNotInTheButtonsThatTheContentCovers) {
    EXPECT_EQ(tintAt(button(2).center()), QRect(0, 1, 320, 47));
}

TEST_P(RowHoverTest, isInTheButtonOfAnOpenRow) {
    row->cellClicked();
    finishSlide();
    for (std::size_t place = 0; place < 4; ++place) {
        const QRect seen = button(place) & placeOn(*row, *row->rightButtonsPanel);
        EXPECT_EQ(tintAt(seen.center()), seen) << place;
    }
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    EXPECT_EQ(tintAt(inPicture()), QRect(0, 1, 320, 47)) << "a click closes it";
}

TEST_P(RowHoverTest, isNotInTheButtonsOfARowThatCloses) {
    row->cellClicked();
    finishSlide();
    support::hover(*row, button(1).center());
    ASSERT_EQ(cursor(), Qt::PointingHandCursor);
    row->collapseCell();
    queue.advance(20ms);
    support::settle();
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    queue.advance(200ms);
    support::settle();
    EXPECT_EQ(cursor(), Qt::PointingHandCursor) << "the content lies there again";
}

TEST_P(RowHoverTest, isNotInADisabledRow) {
    row->setEnabled(false);
    EXPECT_TRUE(tintAt(row->rect().center()).isNull());
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_P(RowHoverTest, isInTheLastRowOrInItsButton) {
    row->setHidden(true);
    const auto last = makeAddRow();
    support::settle();
    support::hover(*last, {160, 25});
    EXPECT_EQ(support::inkOf(support::painted(*last)) | QRect(0, 1, 320, 47), QRect(0, 1, 320, 47));
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    last->contentIsClickable = false;
    support::hover(*last, {161, 25});
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    support::hover(*last, placeOn(*last, *last->addButton).center());
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
}

INSTANTIATE_TEST_SUITE_P(Directions, RowHoverTest, testing::Values(Qt::LeftToRight, Qt::RightToLeft),
                         [](const auto& row) {
                             return row.param == Qt::LeftToRight ? "LeftToRight" : "RightToLeft";
                         });

} // namespace
} // namespace rows

#include "support/Application.h"
#include "views/rows/RowTest.h"

#include <QApplication>
#include <QRegion>

#include <string>
#include <tuple>
#include <vector>

namespace rows {
namespace {

using Room = std::tuple<int, double, Qt::LayoutDirection>; // width of the row, maxSum

class RowLayoutTest : public RowTest, public testing::WithParamInterface<Room> {
protected:
    RowLayoutTest() {
        QApplication::setLayoutDirection(direction);
        row = makeRow(width);
        auto values = rent();
        values.name = QStringLiteral("A name that is longer than any row has room for, whatever its width");
        values.date = support::utc(2026, 9, 30);
        values.amount = QStringLiteral("1,234,567.00");
        row->configureForItem(item(values), std::get<1>(GetParam()));
    }

    // The place in the row of a rectangle that is given from the leading edge.
    [[nodiscard]] QRect fromLeadingEdge(double x, double y, double wide, double high) const {
        const QRectF logical(direction == Qt::LeftToRight ? x : width - x - wide, y, wide, high);
        return logical.toAlignedRect();
    }
    // The views that are side by side in a closed row.
    [[nodiscard]] std::vector<const platform::View*> parts() const {
        return {row->transactionImageView.get(), row->titleLabel.get(), row->transactionTypeImageView.get(),
                row->subtitleLabel.get(), row->sumBackgroundView.get()};
    }
    [[nodiscard]] QRect place(const platform::View& view) const { return placeOn(*row, view); }

    const int width = std::get<0>(GetParam());
    const Qt::LayoutDirection direction = std::get<2>(GetParam());
    std::shared_ptr<TodayTableCellView> row;
};

TEST_P(RowLayoutTest, nothingLeavesTheRowAtRest) {
    for (const platform::View* part : parts())
        EXPECT_TRUE(row->rect().contains(place(*part))) << "part at " << place(*part).x();
    EXPECT_TRUE(place(*row->sumBackgroundView).contains(place(*row->sumLabel)));
    EXPECT_EQ(place(*row->sumBackgroundBox), place(*row->sumBackgroundView));
    EXPECT_EQ(place(*row->cellContentView), row->rect());
}

TEST_P(RowLayoutTest, nothingOverlapsAtRest) {
    for (const platform::View* one : parts())
        for (const platform::View* other : parts())
            if (one < other) {
                EXPECT_FALSE(place(*one).intersects(place(*other)))
                    << place(*one).x() << " and " << place(*other).x();
            }
}

TEST_P(RowLayoutTest, theBadgeStandsAtTheTrailingEdgeWithTheAmountInItsMiddle) {
    const double w = row->sumWidthLayoutConstraint->constant() - 2;
    EXPECT_EQ(place(*row->sumBackgroundView), fromLeadingEdge(width - w - 24, 12, w + 24, 26));
    EXPECT_EQ(place(*row->sumLabel), fromLeadingEdge(width - w - 13, 12, w + 2, 26));
}

TEST_P(RowLayoutTest, theTitleEndsWhereItsConstraintSays) {
    const double space = row->titleRightSpaceLayoutConstraint->constant();
    const QRect title = place(*row->titleLabel);
    if (direction == Qt::LeftToRight) {
        EXPECT_EQ(title.right() + 1, width - space);
    } else {
        EXPECT_EQ(title.left(), space);
    }
    EXPECT_EQ(row->titleLabel->frame().right(), width - space);
}

TEST_P(RowLayoutTest, pictureAndGlyphKeepTheirPlaces) {
    EXPECT_EQ(place(*row->transactionImageView), fromLeadingEdge(0, 6, 38, 38));
    EXPECT_EQ(place(*row->transactionTypeImageView), fromLeadingEdge(50, 29, 12, 12));
}

TEST_P(RowLayoutTest, theTextsAreInsideTheirLabels) {
    row->sumBackgroundView->setHidden(true);
    row->sumLabel->setHidden(true);
    const QRect ink = support::inkOf(support::painted(*row));
    EXPECT_TRUE(row->rect().contains(ink));
    const double end = width - row->titleRightSpaceLayoutConstraint->constant();
    if (direction == Qt::LeftToRight) {
        EXPECT_LE(ink.right(), end);
    } else {
        EXPECT_GE(ink.left(), width - end - 1);
    }
}

TEST_P(RowLayoutTest, theTextsStandStillWhileTheContentSlides) {
    std::vector<QRect> before;
    for (const platform::View* part : parts())
        before.push_back(place(*part));
    row->cellClicked();
    for (int step = 0; step < 4; ++step) {
        queue.advance(50ms);
        std::vector<QRect> now;
        for (const platform::View* part : parts())
            now.push_back(place(*part));
        EXPECT_EQ(now, before) << step;
    }
}

// --- the panel and its visible strip

TEST_P(RowLayoutTest, thePanelStandsAtTheTrailingEdge) {
    const double wide = row->widthConstraint->constant();
    EXPECT_EQ(place(*row->rightButtonsPanel), fromLeadingEdge(width - wide, 0, wide, 50));
}

TEST_P(RowLayoutTest, aClosedRowShowsNothingOfThePanel) {
    EXPECT_FALSE(row->rightButtonsPanel->isVisibleTo(row.get()));
    EXPECT_FALSE(row->rightButtonsPanel->isHidden()); // by its own flag: only the clip hides it
}

TEST_P(RowLayoutTest, contentAndStripShareTheRowWithoutOverlapOrGap) {
    row->cellClicked();
    for (int milliseconds = 10; milliseconds <= 200; milliseconds += 10) {
        queue.advance(10ms);
        const platform::View& panel = *row->rightButtonsPanel;
        const bool shows = panel.isVisibleTo(row.get());
        const QRegion mask = panel.mask().isEmpty() ? QRegion(panel.rect()) : panel.mask();
        const QRegion strip = shows ? mask.translated(place(panel).topLeft()) : QRegion();
        const QRegion content(place(*row->cellContentView));
        EXPECT_TRUE((strip & content).isEmpty()) << "overlap at " << milliseconds << " ms";
        EXPECT_EQ(strip + content, QRegion(row->rect())) << "gap at " << milliseconds << " ms";
    }
}

TEST_P(RowLayoutTest, halfOpenItShowsHalfOfTheStrip) {
    row->cellClicked();
    queue.advance(100ms);
    const int half = static_cast<int>(row->widthConstraint->constant() / 2); // 97 of 195 points
    const QRect strip =
        row->rightButtonsPanel->mask().boundingRect().translated(place(*row->rightButtonsPanel).topLeft());
    EXPECT_EQ(strip, fromLeadingEdge(width - half, 0, half, 50));
}

TEST_P(RowLayoutTest, openItShowsThePanelBesideTheContent) {
    row->cellClicked();
    finishSlide();
    const double wide = row->widthConstraint->constant();
    EXPECT_EQ(place(*row->cellContentView), fromLeadingEdge(0, 0, width - wide, 50));
    EXPECT_EQ(row->rightButtonsPanel->mask().boundingRect(), row->rightButtonsPanel->rect());
    EXPECT_TRUE(row->rightButtonsPanel->isVisibleTo(row.get()));
}

TEST_P(RowLayoutTest, closedAgainItShowsNothingOfThePanel) {
    row->cellClicked();
    finishSlide();
    row->collapseCell();
    queue.advance(199ms);
    queue.advance(1ms);
    EXPECT_FALSE(row->rightButtonsPanel->isVisibleTo(row.get()));
    EXPECT_EQ(place(*row->cellContentView), row->rect());
}

TEST_P(RowLayoutTest, anOpenRowThatChangesItsWidthStaysOpen) {
    row->cellClicked();
    finishSlide();
    const double wide = row->widthConstraint->constant();
    row->setFrame(QRectF(20, 40, 480, 50));
    EXPECT_EQ(row->cellContentView->frame().width(), 480 - wide);
    EXPECT_EQ(row->rightButtonsPanel->width(), wide);
    EXPECT_EQ(row->rightButtonsPanel->x(), direction == Qt::LeftToRight ? 480 - wide : 0);
}

TEST_P(RowLayoutTest, theTitleIsMeasuredFromTheLeadingEdgeWhenItHides) {
    row->titleRightSpaceLayoutConstraint->setConstant(width - 51); // one point of title
    row->cellClicked();
    EXPECT_EQ(row->titleLabel->isHidden(), width - 195 <= 51);
    EXPECT_EQ(row->transactionTypeImageView->isHidden(), width - 195 <= 62);
}

std::string nameOf(const testing::TestParamInfo<Room>& info) {
    const auto& [width, maxSum, direction] = info.param;
    return std::to_string(width) + "PointsAmount" + std::to_string(static_cast<int>(maxSum)) +
           (direction == Qt::LeftToRight ? "LeftToRight" : "RightToLeft");
}

INSTANTIATE_TEST_SUITE_P(Rooms, RowLayoutTest,
                         testing::Combine(testing::Values(240, 320, 600), testing::Values(30.0, 90.0, 140.0),
                                          testing::Values(Qt::LeftToRight, Qt::RightToLeft)),
                         nameOf);

} // namespace
} // namespace rows

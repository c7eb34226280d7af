#include "platform/views/TableViewFixture.h"

namespace table_test {

// --- changes

TEST_F(Table, aRemovedRowFadesWhileTheOthersCloseUp) {
    load({"a", "b", "c"});
    remove(1);
    EXPECT_THAT(standing(), ElementsAre("a", "c"));
    EXPECT_TRUE(isShown("b"));
    EXPECT_EQ(top("c"), 100);
    queue.advance(50ms);
    EXPECT_NEAR(rows.view("b")->alphaValue(), 0.5, 1e-9);
    queue.advance(50ms);
    EXPECT_EQ(rows.view("b")->alphaValue(), 0) << "it fades in the first half";
    EXPECT_EQ(top("b"), 50) << "it fades where it stood";
    EXPECT_NEAR(top("c"), 75, 1e-9);
    queue.advance(100ms);
    EXPECT_EQ(top("c"), 50);
    EXPECT_FALSE(isShown("b"));
    EXPECT_EQ(rows.view("b")->alphaValue(), 1) << "as it was, should it come back";
}

TEST_F(Table, aRowRemovedWithoutAnimationIsGoneAtOnce) {
    load({"a", "b"});
    remove(0, RowAnimation::None);
    EXPECT_FALSE(isShown("a"));
    queue.advance(200ms);
    EXPECT_EQ(top("b"), 0);
}

TEST_F(Table, anInsertedRowSlidesDownFromBehind) {
    load({"a", "b"});
    insert(2, "c");
    EXPECT_EQ(top("c"), 50) << "one row higher than where it will stand";
    EXPECT_EQ(rows.view("c")->alphaValue(), 0);
    EXPECT_FALSE(isShown("c")) << "it comes with the first frame";
    queue.advance(100ms);
    EXPECT_EQ(table.subviews().front(), rows.view("c").get());
    EXPECT_NEAR(top("c"), 75, 1e-9);
    EXPECT_NEAR(rows.view("c")->alphaValue(), 0.5, 1e-9);
    queue.advance(100ms);
    EXPECT_EQ(top("c"), 100);
    EXPECT_EQ(rows.view("c")->alphaValue(), 1);
}

TEST_F(Table, aRowThatTakesTheFirstOnesPlaceSlidesInOverTheUpperEdge) {
    load({"a", "last"});
    table.beginUpdates();
    remove(0);
    insert(0, "b");
    table.endUpdates();
    EXPECT_EQ(top("b"), -50);
    EXPECT_EQ(rows.view("b")->alphaValue(), 0);
    EXPECT_EQ(top("a"), 0);
    EXPECT_EQ(top("last"), 50);
    queue.advance(100ms);
    EXPECT_NEAR(top("b"), -25, 1e-9);
    EXPECT_NEAR(rows.view("b")->alphaValue(), 0.5, 1e-9);
    EXPECT_EQ(rows.view("a")->alphaValue(), 0);
    EXPECT_EQ(top("last"), 50);
    queue.advance(100ms);
    EXPECT_EQ(top("b"), 0);
    EXPECT_EQ(rows.view("b")->alphaValue(), 1);
    EXPECT_FALSE(isShown("a"));
    EXPECT_THAT(standing(), ElementsAre("b", "last"));
}

// --- what moves shows only where no other row is

// The part of a row that shows, from its upper edge to its lower one in the table.
class TableGaps : public Table {
protected:
    using Span = std::pair<int, int>;
    [[nodiscard]] Span shown(const std::string& name) {
        const auto view = rows.view(name);
        if (!isShown(name))
            return {};
        const QRect part = view->mask().isEmpty() ? view->rect() : view->mask().boundingRect();
        return {view->y() + part.top(), view->y() + part.bottom() + 1};
    }
};

TEST_F(TableGaps, aLeavingRowIsCoveredByThoseThatCloseUp) {
    load({"a", "b", "c"});
    remove(1);
    queue.advance(100ms);
    EXPECT_EQ(shown("a"), Span(0, 50));
    EXPECT_EQ(shown("b"), Span(50, 75));
    EXPECT_EQ(shown("c"), Span(75, 125));
    queue.advance(100ms);
    EXPECT_TRUE(rows.view("b")->mask().isEmpty()) << "whole again, should it come back";
}

TEST_F(TableGaps, anArrivingRowShowsBelowTheOneAboveIt) {
    load({"a", "b", "last"});
    insert(2, "c");
    queue.advance(100ms);
    EXPECT_EQ(shown("b"), Span(50, 100));
    EXPECT_EQ(shown("c"), Span(100, 125)) << "it stands at 75";
    queue.advance(100ms);
    EXPECT_EQ(shown("c"), Span(100, 150));
    EXPECT_TRUE(rows.view("c")->mask().isEmpty());
}

TEST_F(TableGaps, anArrivingRowCoversTheOneWhosePlaceItTakes) {
    load({"a", "last"});
    table.beginUpdates();
    remove(0);
    insert(0, "b");
    table.endUpdates();
    queue.advance(100ms);
    EXPECT_EQ(shown("a").first, shown("b").second);
    EXPECT_NEAR(shown("a").first, 25, 1);
    EXPECT_EQ(shown("a").second, 50);
    EXPECT_EQ(shown("last"), Span(50, 100));
}

TEST_F(TableGaps, aReloadMakesLeavingAndArrivingRowsWhole) {
    load({"a", "b", "c"});
    remove(1);
    insert(2, "d");
    queue.advance(100ms);
    rows.names = {"a", "b", "c", "d"};
    table.reloadData();
    for (const char* name : {"a", "b", "c", "d"})
        EXPECT_TRUE(rows.view(name)->mask().isEmpty()) << name;
}

// The lines between rows, at whole points in a picture of the table's middle.
class TableLines : public Table {
protected:
    [[nodiscard]] std::vector<int> lines() {
        table.setSeparator(Qt::white, 0);
        QImage image(200, 220, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        table.render(&image, {}, {}, QWidget::RenderFlags());
        std::vector<int> found;
        for (int y = 0; y < image.height(); ++y)
            if (image.pixelColor(100, y).alpha() > 0)
                found.push_back(y);
        return found;
    }
};

TEST_F(TableLines, theOneAboveALeavingRowStays) {
    load({"a", "b", "c"});
    EXPECT_THAT(lines(), ElementsAre(49, 99));
    remove(1);
    EXPECT_THAT(lines(), ElementsAre(49, 99));
    queue.advance(200ms);
    EXPECT_THAT(lines(), ElementsAre(49));
}

TEST_F(TableLines, theOneBelowTheLastRowGoesWithTheLastRow) {
    load({"a", "b"});
    remove(1);
    EXPECT_THAT(lines(), ElementsAre());
}

TEST_F(TableLines, theOneAboveAnArrivingRowDoesNotCrossTheRowAboveIt) {
    load({"a", "b"});
    insert(2, "c");
    EXPECT_THAT(lines(), ElementsAre(49, 99));
    queue.advance(100ms);
    EXPECT_THAT(lines(), ElementsAre(49, 99));
    queue.advance(100ms);
    EXPECT_THAT(lines(), ElementsAre(49, 99));
}

TEST_F(Table, anInsertedRowMayFadeInWhereItStands) {
    load({"a"});
    insert(1, "b", RowAnimation::Fade);
    EXPECT_EQ(top("b"), 50);
    queue.advance(100ms);
    EXPECT_EQ(top("b"), 50);
    EXPECT_NEAR(rows.view("b")->alphaValue(), 0.5, 1e-9);
}

TEST_F(Table, anInsertedRowMovesThoseBelow) {
    load({"a", "b"});
    insert(0, "c", RowAnimation::Fade);
    EXPECT_EQ(top("a"), 0);
    queue.advance(200ms);
    EXPECT_EQ(top("a"), 50);
    EXPECT_EQ(top("b"), 100);
    EXPECT_THAT(standing(), ElementsAre("c", "a", "b"));
}

TEST_F(Table, numbersCountTheRowsAsEarlierChangesLeftThem) {
    load({"a", "b", "c", "d"});
    table.beginUpdates();
    remove(1);      // a c d
    remove(1);      // a d
    insert(2, "e"); // a d e
    insert(0, "f"); // f a d e
    table.endUpdates();
    EXPECT_THAT(standing(), ElementsAre("f", "a", "d", "e"));
    queue.advance(200ms);
    EXPECT_EQ(top("f"), 0);
    EXPECT_EQ(top("a"), 50);
    EXPECT_EQ(top("d"), 100);
    EXPECT_EQ(top("e"), 150);
    EXPECT_EQ(table.subviews().size(), 4U);
}

TEST_F(Table, showsChangesOfOneBatchTogether) {
    load({"a", "b", "add"});
    table.beginUpdates();
    remove(0);
    insert(1, "c");
    EXPECT_EQ(top("add"), 100) << "nothing moves before the end of the batch";
    table.endUpdates();
    queue.advance(100ms);
    EXPECT_NEAR(top("b"), 25, 1e-9);
    EXPECT_NEAR(top("c"), 25, 1e-9) << "from 0 to 50";
    EXPECT_NEAR(top("add"), 100, 1e-9);
    queue.advance(100ms);
    EXPECT_THAT(standing(), ElementsAre("b", "c", "add"));
}

TEST_F(Table, batchesNest) {
    load({"a", "b", "c"});
    table.beginUpdates();
    table.beginUpdates();
    remove(0);
    table.endUpdates();
    queue.advance(200ms);
    EXPECT_EQ(top("b"), 50);
    table.endUpdates();
    queue.advance(200ms);
    EXPECT_EQ(top("b"), 0);
}

TEST_F(Table, aLaterChangeBringsTheEarlierToItsEnd) {
    load({"a", "b", "c"});
    remove(0);
    queue.advance(100ms);
    remove(0); // b
    EXPECT_FALSE(isShown("a"));
    EXPECT_EQ(rows.view("a")->alphaValue(), 1);
    EXPECT_EQ(top("c"), 50);
    queue.advance(50ms);
    EXPECT_NEAR(rows.view("b")->alphaValue(), 0.5, 1e-9);
    queue.advance(50ms);
    EXPECT_NEAR(top("c"), 25, 1e-9);
    queue.advance(100ms);
    EXPECT_THAT(standing(), ElementsAre("c"));
}

TEST_F(Table, reloadEndsRunningChangesAtOnce) {
    load({"a", "b", "c"});
    remove(0);
    insert(2, "d");
    queue.advance(100ms);
    table.reloadData();
    EXPECT_THAT(standing(), ElementsAre("b", "c", "d"));
    EXPECT_EQ(top("b"), 0);
    EXPECT_EQ(top("d"), 100);
    EXPECT_EQ(rows.view("d")->alphaValue(), 1);
    EXPECT_FALSE(isShown("a"));
    queue.advance(1s);
    EXPECT_EQ(top("d"), 100);
}

TEST_F(Table, aLeavingRowMayComeBackWithAReload) {
    load({"a", "b"});
    remove(0);
    queue.advance(100ms);
    rows.names = {"a", "b"};
    table.reloadData();
    EXPECT_THAT(standing(), ElementsAre("a", "b"));
    EXPECT_EQ(rows.view("a")->alphaValue(), 1);
    queue.advance(1s);
    EXPECT_TRUE(isShown("a"));
}

TEST_F(Table, removingTheLastRowLeavesNone) {
    load({"a"});
    remove(0);
    queue.advance(200ms);
    EXPECT_EQ(table.numberOfRows(), 0);
    EXPECT_TRUE(table.subviews().empty());
}

TEST_F(Table, mayGoInTheMiddleOfAChange) {
    auto other = std::make_unique<TableView>(&root);
    other->setFrame(QRectF(0, 0, 200, 100));
    other->setDataSource(&rows);
    other->setDelegate(&rows);
    rows.names = {"a", "b"};
    other->reloadData();
    rows.names = {"b"};
    other->removeRow(0, RowAnimation::Fade);
    queue.advance(100ms);
    other.reset();
    queue.advance(1s);
    EXPECT_EQ(rows.view("a")->alphaValue(), 1);
    EXPECT_EQ(rows.view("a")->superview(), nullptr);
}

TEST_F(Table, aRowThatComesIntoSightMovesInFromTheStart) {
    load({"a", "b", "c", "d"}, 100);
    remove(0);
    EXPECT_THAT(standing(), ElementsAre("b", "c", "-"));
    EXPECT_EQ(top("c"), 100);
    EXPECT_FALSE(isShown("c"));
    queue.advance(100ms);
    EXPECT_TRUE(isShown("c"));
    EXPECT_NEAR(top("c"), 75, 1e-9);
}

TEST_F(Table, aRowThatGoesOutOfSightMovesOutToTheEnd) {
    load({"a", "b"}, 100);
    insert(0, "c", RowAnimation::Fade);
    queue.advance(100ms);
    EXPECT_TRUE(isShown("b"));
    EXPECT_NEAR(top("b"), 75, 1e-9);
    queue.advance(100ms);
    EXPECT_FALSE(isShown("b"));
    EXPECT_THAT(standing(), ElementsAre("c", "a", "-"));
}

// --- before the first frame of a change

TEST_F(Table, aReloadBeforeTheFirstFrameShowsTheRowsAtRest) {
    load({"a", "b"});
    insert(2, "c");
    rows.names = {"a", "c"};
    table.reloadData();
    EXPECT_TRUE(isShown("c"));
    EXPECT_FALSE(isShown("b"));
    EXPECT_EQ(top("c"), 50);
    EXPECT_EQ(rows.view("c")->alphaValue(), 1);
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(Table, aChangeBeforeTheFirstFrameFindsTheEarlierOneAtItsEnd) {
    load({"a", "b"});
    insert(2, "c");
    remove(0);
    EXPECT_TRUE(isShown("c"));
    EXPECT_EQ(rows.view("c")->alphaValue(), 1);
    EXPECT_EQ(top("c"), 100);
    queue.advance(200ms);
    EXPECT_EQ(top("c"), 50);
    EXPECT_THAT(standing(), ElementsAre("b", "c"));
}

TEST_F(Table, aRowThatHasNotJoinedYetIsNotHit) {
    load({"a"});
    insert(1, "b", RowAnimation::Fade);
    EXPECT_EQ(table.hitTest(QPointF(10, 60)), &table);
    queue.advance(100ms);
    EXPECT_EQ(table.hitTest(QPointF(10, 60)), rows.view("b").get());
}

TEST_F(Table, aRowInsertedWithoutAnimationIsThereAtOnce) {
    load({"a"});
    insert(1, "b", RowAnimation::None);
    EXPECT_TRUE(isShown("b"));
    EXPECT_EQ(top("b"), 50);
}

} // namespace table_test

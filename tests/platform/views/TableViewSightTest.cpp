#include "platform/views/TableViewFixture.h"

namespace table_test {

// --- presses

class TableMouse : public Table {
protected:
    void SetUp() override {
        support::showWindow(root, 200, 400);
        load({"a", "b", "c"});
        support::settle();
    }
};

TEST_F(TableMouse, asksOnlyTheRowAtThePoint) {
    support::click(table, {10, 75});
    EXPECT_EQ(rows.view("b")->presses, 1);
    EXPECT_EQ(rows.view("a")->presses + rows.view("c")->presses, 0);
}

TEST_F(TableMouse, givesEachEdgeToOneRow) {
    support::click(table, {10, 49});
    support::click(table, {10, 50});
    EXPECT_EQ(rows.view("a")->presses, 1);
    EXPECT_EQ(rows.view("b")->presses, 1);
}

TEST_F(TableMouse, belowTheRowsIsTheTables) {
    EXPECT_EQ(table.hitTest({10, 160}), &table);
    EXPECT_EQ(table.hitTest({10, 400}), nullptr);
}

TEST_F(TableMouse, aHiddenTableHasNone) {
    table.setHidden(true);
    EXPECT_EQ(table.hitTest({10, 10}), nullptr);
}

TEST_F(TableMouse, aLeavingRowTakesNoPress) {
    remove(1);
    support::click(table, {10, 75});
    EXPECT_EQ(rows.view("b")->presses, 0);
}

TEST_F(TableMouse, theRowThatMovesUpTakesThePressWhereItIsNow) {
    remove(0);
    queue.advance(100ms); // b at 25
    support::click(table, {10, 30});
    EXPECT_EQ(rows.view("b")->presses, 1);
    support::click(table, {10, 10});
    EXPECT_EQ(rows.view("a")->presses, 0);
}

TEST_F(TableMouse, aLeavingRowTakesNoKeyAndNoAssistiveProgram) {
    View inner;
    inner.setFocusPolicy(Qt::TabFocus);
    rows.view("b")->addSubview(inner);
    root.activateWindow();
    support::settle();
    inner.setFocus();
    ASSERT_TRUE(inner.hasFocus());
    remove(1);
    EXPECT_FALSE(inner.hasFocus());
    EXPECT_FALSE(inner.isEnabled());
    queue.advance(200ms);
    EXPECT_TRUE(inner.isEnabled()) << "as it was, should it come back";
}

// --- painting

namespace {

// Counts the events of one type that a view gets.
class EventCount final : public QObject {
public:
    EventCount(View& view, QEvent::Type type)
        : type_(type) {
        view.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == type_;
        return false;
    }
    int count = 0;

private:
    QEvent::Type type_;
};

} // namespace

TEST_F(Table, paintsTheRowsThatMoveOnceTheyMove) {
    support::showWindow(root, 200, 400);
    load({"a", "b", "c"});
    support::settle();
    EventCount paints(*rows.view("c"), QEvent::Paint);
    remove(1);
    support::settle();
    EXPECT_EQ(paints.count, 0) << "nothing looks different yet";
    queue.advance(16ms);
    support::settle();
    EXPECT_GE(paints.count, 1);
}

// --- separators

TEST_F(Table, drawsAHairlineBetweenTwoRows) {
    table.setSeparator(Qt::red, 30);
    load({"a", "b", "c"});
    const QImage image = support::painted(table);
    EXPECT_EQ(support::inkOf(image), QRect(30, 49, 170, 51)) << "none above the first and below the last";
    EXPECT_EQ(image.pixelColor(30, 49), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(199, 99), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(100, 50).alpha(), 0);
}

TEST_F(Table, drawsTheHairlinesOfAPartThatIsPaintedAlone) {
    table.setSeparator(Qt::red, 30);
    load({"a", "b", "c", "d"});
    const QImage whole = support::painted(table);
    for (const QRect part : {QRect(0, 49, 200, 1), QRect(0, 90, 200, 100), QRect(0, 50, 200, 49)}) {
        QImage image(200, 400, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        table.render(&image, part.topLeft(), part, QWidget::DrawChildren);
        EXPECT_EQ(image.copy(part), whole.copy(part)) << part.y();
    }
}

TEST_F(Table, indentsTheHairlineFromTheLeadingEdge) {
    table.setLayoutDirection(Qt::RightToLeft);
    table.setSeparator(Qt::red, 30);
    load({"a", "b"});
    EXPECT_EQ(support::inkOf(support::painted(table)), QRect(0, 49, 170, 1));
}

TEST_F(Table, isTransparentUntilItHasABackground) {
    load({"a"});
    EXPECT_TRUE(support::inkOf(support::painted(table)).isNull());
    table.setBackgroundColor(Qt::blue);
    EXPECT_EQ(support::painted(table).pixelColor(100, 300), QColor(Qt::blue));
    table.setBackgroundColor(Qt::transparent);
    EXPECT_TRUE(support::inkOf(support::painted(table)).isNull());
}

// --- in a scroll view

class ScrolledTable : public Table {
protected:
    ScrolledTable() {
        table.setFillsSuperview(true);
        scroll.setDocumentView(&table);
        scroll.setFrame(QRectF(0, 0, 200, 100));
        scroll.setDocumentHeight(500);
        for (int i = 0; i < 10; ++i)
            rows.names.push_back(std::to_string(i));
        table.reloadData();
    }
    ~ScrolledTable() override { scroll.setDocumentView(nullptr); }

    ScrollView scroll;
};

TEST_F(ScrolledTable, showsTheRowsInSight) {
    EXPECT_THAT(standing(), ElementsAre("0", "1", "-", "-", "-", "-", "-", "-", "-", "-"));
    scroll.scrollTo(75);
    EXPECT_THAT(standing(), ElementsAre("-", "1", "2", "3", "-", "-", "-", "-", "-", "-"));
    scroll.scrollTo(400);
    EXPECT_THAT(standing(), ElementsAre("-", "-", "-", "-", "-", "-", "-", "-", "8", "9"));
    EXPECT_EQ(table.subviews().size(), 2U);
}

TEST_F(ScrolledTable, growsIntoMoreRows) {
    scroll.setFrame(QRectF(0, 0, 200, 150));
    EXPECT_EQ(table.subviews().size(), 3U);
}

// --- deaths

using TableDeathTest = Table;

TEST_F(TableDeathTest, removingARowOutsideTheTableIsFatal) {
    load({"a", "b"});
    EXPECT_EXIT(table.removeRow(2, RowAnimation::Fade), testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT(table.removeRow(-1, RowAnimation::Fade), testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(TableDeathTest, insertingARowOutsideTheTableIsFatal) {
    load({"a", "b"});
    EXPECT_EXIT(table.insertRow(3, RowAnimation::Fade), testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT(table.insertRow(-1, RowAnimation::Fade), testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(TableDeathTest, askingForARowOutsideTheTableIsFatal) {
    load({"a", "b"});
    EXPECT_EXIT((void)table.viewAtRow(2), testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT((void)table.viewAtRow(-1), testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(TableDeathTest, endingABatchThatWasNotBegunIsFatal) {
    EXPECT_EXIT(table.endUpdates(), testing::KilledBySignal(SIGABRT), "^$");
}

} // namespace table_test

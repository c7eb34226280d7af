#include "platform/views/TableView.h"

#include "platform/system/ManualMainQueue.h"
#include "platform/views/ScrollView.h"
#include "support/Application.h"
#include "support/Events.h"

#include <QPainter>

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using platform::RowAnimation;
using platform::ScrollView;
using platform::TableView;
using platform::View;
using testing::ElementsAre;

namespace {

class RowView final : public View {
public:
    explicit RowView(std::string name)
        : name(std::move(name)) {}

    // Takes every point for its own, as a row of the widget may.
    View* hitTest(QPointF) override { return this; }
    void mouseDown(const platform::MouseEvent&) override { ++presses; }
    void mouseUp(const platform::MouseEvent&) override {}

    std::string name;
    int presses = 0;
};

// Serves rows named by a list of names and keeps their views, as the widget's controller does.
class Rows final : public platform::TableViewDataSource, public platform::TableViewDelegate {
public:
    std::int64_t numberOfRowsInTableView(TableView&) override {
        return static_cast<std::int64_t>(names.size());
    }
    std::shared_ptr<View> tableViewViewForTableColumnRow(TableView&, std::int64_t column,
                                                         std::int64_t row) override {
        EXPECT_EQ(column, 0);
        asked.push_back(row);
        return view(names.at(static_cast<std::size_t>(row)));
    }
    double tableViewHeightOfRow(TableView&, std::int64_t row) override {
        const auto height = heights.find(row);
        return height == heights.end() ? 50 : height->second;
    }

    std::shared_ptr<RowView> view(const std::string& name) {
        auto& kept = views[name];
        if (!kept)
            kept = platform::makeView<RowView>(name);
        return kept;
    }

    std::vector<std::string> names;
    std::map<std::string, std::shared_ptr<RowView>> views;
    std::map<std::int64_t, double> heights;
    std::vector<std::int64_t> asked;
};

class Table : public testing::Test {
protected:
    Table() {
        root.addSubview(table);
        table.setDataSource(&rows);
        table.setDelegate(&rows);
    }
    ~Table() override {
        table.setDelegate(nullptr);
        table.setDataSource(nullptr);
    }

    void load(std::vector<std::string> names, int height = 400) {
        rows.names = std::move(names);
        root.setFrame(QRectF(0, 0, 200, height));
        table.setFrame(QRectF(0, 0, 200, height));
        table.reloadData();
    }
    void remove(std::int64_t row, RowAnimation animation = RowAnimation::Fade) {
        rows.names.erase(rows.names.begin() + row);
        table.removeRow(row, animation);
    }
    void insert(std::int64_t row, const std::string& name, RowAnimation animation = RowAnimation::SlideDown) {
        rows.names.insert(rows.names.begin() + row, name);
        table.insertRow(row, animation);
    }

    // The views that stand in the rows, "-" where none does.
    std::vector<std::string> standing() const {
        std::vector<std::string> names;
        for (std::int64_t i = 0; i < table.numberOfRows(); ++i) {
            const auto view = std::dynamic_pointer_cast<RowView>(table.viewAtRow(i));
            names.push_back(view ? view->name : "-");
        }
        return names;
    }
    double top(const std::string& name) { return rows.view(name)->frame().y(); }
    bool isShown(const std::string& name) { return rows.view(name)->superview() == &table; }

    platform::ManualMainQueue queue;
    Rows rows;
    View root;
    TableView table;
};

// --- loading

TEST_F(Table, standsItsRowsBelowEachOther) {
    rows.heights = {{1, 30.5}};
    load({"a", "b", "c"});
    EXPECT_THAT(standing(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(rows.view("a")->frame(), QRectF(0, 0, 200, 50));
    EXPECT_EQ(rows.view("b")->frame(), QRectF(0, 50, 200, 30.5));
    EXPECT_EQ(rows.view("c")->frame(), QRectF(0, 80.5, 200, 50));
    EXPECT_EQ(rows.view("c")->superview(), &table);
}

TEST_F(Table, withoutADataSourceHasNoRows) {
    table.setDataSource(nullptr);
    load({"a"});
    EXPECT_EQ(table.numberOfRows(), 0);
}

TEST_F(Table, withoutRowsIsEmpty) {
    load({});
    EXPECT_EQ(table.numberOfRows(), 0);
    EXPECT_TRUE(table.subviews().empty());
}

TEST_F(Table, asksForTheViewsInSightOnly) {
    load({"a", "b", "c", "d", "e"}, 120);
    EXPECT_THAT(rows.asked, ElementsAre(0, 1, 2));
    EXPECT_THAT(standing(), ElementsAre("a", "b", "c", "-", "-"));
}

TEST_F(Table, aRowThatOnlyTouchesTheEdgeIsOutOfSight) {
    load({"a", "b", "c"}, 100);
    EXPECT_THAT(standing(), ElementsAre("a", "b", "-"));
}

TEST_F(Table, ofTenThousandRowsHoldsThoseInSight) {
    std::vector<std::string> names;
    for (int i = 0; i < 10'000; ++i)
        names.push_back(std::to_string(i));
    load(std::move(names), 300);
    EXPECT_EQ(table.numberOfRows(), 10'000);
    EXPECT_EQ(table.subviews().size(), 6U);
    EXPECT_EQ(rows.asked.size(), 6U);
}

TEST_F(Table, growsIntoMoreRowsAlsoUnshown) {
    load({"a", "b", "c"}, 50);
    root.setFrame(QRectF(0, 0, 300, 150));
    table.setFrame(QRectF(0, 0, 300, 150));
    EXPECT_THAT(standing(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(rows.view("a")->frame(), QRectF(0, 0, 300, 50));
}

TEST_F(Table, shrinksOutOfRows) {
    load({"a", "b", "c"}, 150);
    table.setFrame(QRectF(0, 0, 200, 50));
    EXPECT_THAT(standing(), ElementsAre("a", "-", "-"));
    EXPECT_FALSE(isShown("b"));
}

TEST_F(Table, reloadKeepsTheViewsThatComeBack) {
    load({"a", "b", "c"});
    QPointer<QWidget> b = rows.view("b").get();
    rows.names = {"b", "d"};
    table.reloadData();
    EXPECT_THAT(standing(), ElementsAre("b", "d"));
    EXPECT_EQ(top("b"), 0);
    EXPECT_FALSE(isShown("a"));
    EXPECT_FALSE(isShown("c"));
    EXPECT_TRUE(isShown("b"));
}

TEST_F(Table, reloadLeavesAReturningViewInTheTree) {
    support::showWindow(root, 200, 400);
    load({"a", "b"});
    struct Watcher final : QObject {
        int moves = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            moves += event->type() == QEvent::ParentChange || event->type() == QEvent::Hide;
            return false;
        }
    } watcher;
    rows.view("a")->installEventFilter(&watcher);
    table.reloadData();
    EXPECT_EQ(watcher.moves, 0);
}

TEST_F(Table, reloadAsksForEveryRowAnew) {
    load({"a", "b"});
    rows.asked.clear();
    table.reloadData();
    EXPECT_THAT(rows.asked, ElementsAre(0, 1));
}

TEST_F(Table, aDelegateMayHaveNoViewForARow) {
    load({"a", "b"});
    class None final : public platform::TableViewDelegate {
        std::shared_ptr<View> tableViewViewForTableColumnRow(TableView&, std::int64_t,
                                                             std::int64_t) override {
            return nullptr;
        }
        double tableViewHeightOfRow(TableView&, std::int64_t) override { return 50; }
    } none;
    table.setDelegate(&none);
    table.reloadData();
    EXPECT_EQ(table.numberOfRows(), 2);
    EXPECT_EQ(table.viewAtRow(0), nullptr);
    EXPECT_TRUE(table.subviews().empty());
}

TEST_F(Table, deletesNoRowOfItsDelegate) {
    auto other = std::make_unique<TableView>(&root);
    other->setFrame(QRectF(0, 0, 200, 100));
    other->setDataSource(&rows);
    other->setDelegate(&rows);
    rows.names = {"a", "b"};
    other->reloadData();
    const QPointer<QWidget> a = rows.view("a").get();
    other.reset();
    support::flushDeferredDeletes();
    ASSERT_FALSE(a.isNull());
    EXPECT_EQ(a->parentWidget(), nullptr);
}

// --- identifiers

TEST_F(Table, makesAFreshViewForAnIdentifierEachTime) {
    table.registerNib([] { return std::vector<std::shared_ptr<View>>{platform::makeView<View>()}; },
                      QStringLiteral("row"));
    const auto first = table.makeViewWithIdentifier(QStringLiteral("row"));
    const auto second = table.makeViewWithIdentifier(QStringLiteral("row"));
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, second);
}

TEST_F(Table, makesNothingForAnUnknownIdentifierOrAnEmptyFile) {
    table.registerNib([] { return std::vector<std::shared_ptr<View>>(); }, QStringLiteral("empty"));
    EXPECT_EQ(table.makeViewWithIdentifier(QStringLiteral("empty")), nullptr);
    EXPECT_EQ(table.makeViewWithIdentifier(QStringLiteral("unknown")), nullptr);
}

TEST_F(Table, makesTheFirstViewOfAFile) {
    std::shared_ptr<View> first;
    table.registerNib(
        [&] {
            first = platform::makeView<View>();
            return std::vector<std::shared_ptr<View>>{first, platform::makeView<View>()};
        },
        QStringLiteral("two"));
    EXPECT_EQ(table.makeViewWithIdentifier(QStringLiteral("two")), first);
}

// --- changes

TEST_F(Table, aRemovedRowFadesWhileTheOthersCloseUp) {
    load({"a", "b", "c"});
    remove(1);
    EXPECT_THAT(standing(), ElementsAre("a", "c"));
    EXPECT_TRUE(isShown("b"));
    EXPECT_EQ(top("c"), 100);
    queue.advance(100ms);
    EXPECT_NEAR(rows.view("b")->alphaValue(), 0.5, 1e-9);
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
    EXPECT_EQ(table.subviews().front(), rows.view("c").get());
    queue.advance(100ms);
    EXPECT_NEAR(top("c"), 75, 1e-9);
    EXPECT_NEAR(rows.view("c")->alphaValue(), 0.5, 1e-9);
    queue.advance(100ms);
    EXPECT_EQ(top("c"), 100);
    EXPECT_EQ(rows.view("c")->alphaValue(), 1);
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
    queue.advance(100ms);
    EXPECT_NEAR(rows.view("b")->alphaValue(), 0.5, 1e-9);
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
    queue.advance(100ms);
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

} // namespace

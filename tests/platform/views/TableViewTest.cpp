#include "platform/views/TableViewFixture.h"

namespace table_test {

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

} // namespace table_test

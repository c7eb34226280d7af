#pragma once

#include "platform/views/TableView.h"

#include "platform/views/ScrollView.h"
#include "support/Application.h"
#include "support/Events.h"
#include "support/ManualMainQueue.h"

#include <QPainter>

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

// What the tests of one class share.
namespace table_test {

using namespace std::chrono_literals;
using platform::RowAnimation;
using platform::ScrollView;
using platform::TableView;
using platform::View;
using testing::ElementsAre;

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

    support::ManualMainQueue queue;
    Rows rows;
    View root;
    TableView table;
};

} // namespace table_test

#pragma once

#include "controller/TodayViewController.h"
#include "exchange/ExchangeTest.h"
#include "support/ManualMainQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <vector>

// Expects that a statement ends the process by platform::fatal() and prints nothing.
#define EXPECT_FATAL(statement) EXPECT_EXIT(statement, testing::KilledBySignal(SIGABRT), "^$")

namespace controller {

namespace plist = platform::plist;
using Action = TodayTransactionAction;
using Count = TodayTransactionsCount;
using exchange::day;
using exchange::hour;
using exchange::tenthOfMarch;

// A record of the feed whose plan is "plan of NAME".
struct Occurrence {
    std::string name;
    double date = tenthOfMarch;
    bool isSinglePlan = true;
    std::string amount = "$ 9";
};

// A controller with a container of real files, on 10 March 2026 at 15:00 UTC. Deferred work and animations
// run when `queue` is advanced. The view has the height that it prefers, as in the panel. Texts are not
// translated, so that each one is its key.
class ControllerTest : public exchange::ExchangeTest {
protected:
    ControllerTest();
    ~ControllerTest() override;

    // --- files

    void giveFeed(const std::vector<Occurrence>& occurrences) const;
    void giveFeedOf(int count,
                    bool isSinglePlan = true) const; // of transactions "A", "B", ..., a minute apart
    void giveFatalFeed() const;                      // reading its records is fatal
    void giveSettings(std::int64_t shownCount, std::int64_t days) const;
    void giveIcon(const std::string& name) const;

    // The feed and the log after an action of the exchange alone. Both files are restored before it returns.
    struct Files {
        std::string feed;
        std::string log;
        bool operator==(const Files&) const = default;
    };
    [[nodiscard]] Files files() const;
    [[nodiscard]] Files filesAfter(const TodayTransaction& transaction, Action action) const;

    // --- the controller

    void load(); // makes a new controller and its view
    void load(Count count);
    void end(); // releases the controller as the panel does, and performs deferred deletes

    [[nodiscard]] platform::TableView& table() const { return *controller->mainTableView; }
    [[nodiscard]] TodayTableCellView& row(std::size_t number) const { return *controller->cellArray[number]; }
    [[nodiscard]] TodayActionSheetView& sheet() const { return *controller->actionSheet; }
    [[nodiscard]] TodayTransactionPtr transaction(std::size_t number) const {
        return controller->transactionsArray[number];
    }
    [[nodiscard]] std::shared_ptr<TodayAddTableCellView> addRow() const;
    [[nodiscard]] double height() const { return controller->preferredContentSize().height(); }
    // The names of the list's transactions.
    [[nodiscard]] std::vector<std::string> names() const;
    // The rows of the table: the names, and the caption of the last row in brackets.
    [[nodiscard]] std::vector<std::string> shown() const;

    // Opens a row and clicks one of its buttons.
    void act(std::size_t number, Action action);

    support::ManualMainQueue queue;
    std::shared_ptr<TodayViewController> controller;
    std::vector<std::string> opened; // the URLs
    bool followsPreferredHeight = true;
};

} // namespace controller

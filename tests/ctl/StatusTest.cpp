#include "ctl/CtlTest.h"
#include "ctl/StatusFollower.h"
#include "support/ManualMainQueue.h"
#include "support/ManualWatches.h"
#include "support/RegionOverride.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;
using namespace std::chrono_literals;
using testing::StartsWith;

// The clock stands at 2026-03-10 15:00 UTC.
class StatusTest : public CtlTest {
protected:
    void writeFeedOf(const std::vector<double>& dates) const {
        std::vector<plist::Value> records;
        for (const double date : dates)
            records.emplace_back(recordOf("p", date));
        writeFeed(records);
    }
};

TEST_F(StatusTest, countsWhatIsOverdueDueTodayAndDue) {
    setSettings({{"notification_days_count", plist::Value(std::int64_t(3))}});
    writeFeedOf({utc(2026, 3, 9), utc(2026, 3, 10, 14), utc(2026, 3, 10, 18), utc(2026, 3, 11),
                 utc(2026, 3, 13), utc(2026, 3, 14)});
    EXPECT_EQ(run({"status"}), 0);
    EXPECT_THAT(out, StartsWith("transactions: 2 overdue, 1 due today, 3 due\nconfinement: "));
    EXPECT_EQ(run({"status", "--json"}), 0);
    EXPECT_THAT(out, StartsWith("{\"overdue\": 2, \"dueToday\": 1, \"due\": 3, \"confinement\": {"));
    EXPECT_EQ(nlohmann::json::parse(out).size(), 4U);
}

TEST_F(StatusTest, countsAllHoweverManyAreShown) {
    writeFeedOf(std::vector<double>(8, tenthOfMarch));
    EXPECT_EQ(run({"status"}), 0);
    EXPECT_THAT(out, StartsWith("transactions: 8 overdue, 0 due today, 0 due\n"));
    setSettings({{"show_transactions_count", plist::Value(std::int64_t(-1))}});
    EXPECT_EQ(run({"status"}), 0);
    EXPECT_THAT(out, StartsWith("transactions: 0 overdue, 0 due today, 0 due\n")) << "a list that is hidden";
}

TEST_F(StatusTest, countsNothingWhereTheWidgetsListIsEmpty) {
    EXPECT_EQ(run({"status"}), 0) << "no feed";
    EXPECT_THAT(out, StartsWith("transactions: 0 overdue, 0 due today, 0 due\n"));
    removeContainer();
    EXPECT_EQ(run({"status"}), 0) << "no container";
    EXPECT_THAT(out, StartsWith("transactions: 0 overdue, 0 due today, 0 due\n"));
}

TEST_F(StatusTest, saysThatItCannotCount) {
    write("notifications.xml", "text");
    EXPECT_EQ(run({"status"}), 1);
    EXPECT_THAT(out, StartsWith("transactions: unknown\nconfinement: "));
    EXPECT_EQ(err, "korvel-todayctl: " + path("notifications.xml") + ": no array of records can be read\n");
    EXPECT_EQ(run({"status", "--json"}), 1);
    EXPECT_THAT(out, StartsWith("{\"overdue\": null, \"dueToday\": null, \"due\": null, "));
}

// The days that the list looks ahead are seven, so that nothing falls out of it here.
class StatusFollowerTest : public StatusTest {
protected:
    StatusFollowerTest() { setSettings({{"notification_days_count", plist::Value(std::int64_t(7))}}); }

    // What is printed next after a file has changed.
    std::string afterAChange() {
        watcher->tell(platform::PathWatcher::Change::Path);
        queue.advance(100ms);
        return printed();
    }
    // What is printed when the alarm rings.
    std::string at(double moment) {
        clock.set(moment);
        alarm->ring();
        return printed();
    }
    std::string printed() {
        std::string text = output.str();
        output.str({});
        return text;
    }
    std::string said() {
        std::string text = errors.str();
        errors.str({});
        return text;
    }

    support::ManualMainQueue queue;
    std::istringstream input;
    std::ostringstream output;
    std::ostringstream errors;
    Streams streams{input, output, errors};
    StatusText text{false};
    support::ManualWatcher* watcher = new support::ManualWatcher;
    support::ManualAlarm* alarm = new support::ManualAlarm;
    StatusFollower follower{std::unique_ptr<platform::PathWatcher>(watcher),
                            std::unique_ptr<platform::WallClockAlarm>(alarm), text, streams};
};

TEST_F(StatusFollowerTest, printsALineAtOnceAndThenWhenTheFeedChangesTheCounts) {
    writeFeedOf({utc(2026, 3, 10, 14)});
    follower.look();
    EXPECT_EQ(printed(), "transactions: 1 overdue, 0 due today, 0 due\n");
    writeFeedOf({utc(2026, 3, 10, 13)});
    EXPECT_EQ(afterAChange(), "") << "the counts are the same";
    writeFeedOf({utc(2026, 3, 10, 13), utc(2026, 3, 11)});
    EXPECT_EQ(afterAChange(), "transactions: 1 overdue, 0 due today, 1 due\n");
    setSettings({{"notification_days_count", plist::Value(std::int64_t(0))}});
    EXPECT_EQ(afterAChange(), "transactions: 1 overdue, 0 due today, 0 due\n");
    EXPECT_EQ(said(), "");
}

TEST_F(StatusFollowerTest, printsALineWhenATransactionFallsDueAndAtMidnight) {
    writeFeedOf({utc(2026, 3, 10, 18), utc(2026, 3, 11, 9)});
    follower.look();
    EXPECT_EQ(printed(), "transactions: 0 overdue, 1 due today, 2 due\n");
    EXPECT_EQ(alarm->moment, utc(2026, 3, 10, 18));
    EXPECT_EQ(at(utc(2026, 3, 10, 18) + 0.001), "transactions: 1 overdue, 0 due today, 1 due\n");
    EXPECT_EQ(alarm->moment, utc(2026, 3, 11));
    EXPECT_EQ(at(utc(2026, 3, 11)), "transactions: 1 overdue, 1 due today, 1 due\n");
}

TEST_F(StatusFollowerTest, printsALineWhenTheClockIsSet) {
    writeFeedOf({utc(2026, 3, 10, 14)});
    follower.look();
    EXPECT_EQ(printed(), "transactions: 1 overdue, 0 due today, 0 due\n");
    EXPECT_EQ(at(utc(2026, 3, 10, 8)), "transactions: 0 overdue, 1 due today, 1 due\n");
}

TEST_F(StatusFollowerTest, saysAFaultOnceAndGoesOn) {
    write("notifications.xml", "text");
    follower.look();
    EXPECT_EQ(printed(), "transactions: unknown\n");
    EXPECT_EQ(said(),
              "korvel-todayctl: " + path("notifications.xml") + ": no array of records can be read\n");
    write("notifications.xml", "another text");
    EXPECT_EQ(afterAChange(), "");
    EXPECT_EQ(said(), "") << "it was said";
    writeFeedOf({});
    EXPECT_EQ(afterAChange(), "transactions: 0 overdue, 0 due today, 0 due\n");
    write("notifications.xml", "text");
    EXPECT_EQ(afterAChange(), "transactions: unknown\n");
    EXPECT_NE(said(), "");
}

TEST_F(StatusFollowerTest, tellsThatItsOutputIsLost) {
    bool isLost = false;
    follower.setOutputLost([&] { isLost = true; });
    follower.look();
    EXPECT_FALSE(isLost);
    writeFeedOf({utc(2026, 3, 10, 14)});
    output.setstate(std::ios::badbit);
    (void)afterAChange();
    EXPECT_TRUE(isLost);
}

TEST_F(StatusFollowerTest, readsNothingWhereItMayNot) {
    writeFeedOf({utc(2026, 3, 10, 14)});
    follower.setMayRead([] { return false; });
    follower.look();
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(watcher->followed, 0);
}

} // namespace
} // namespace ctl

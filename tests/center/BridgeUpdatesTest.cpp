#include "center/BridgeUpdates.h"

#include "BridgeStandIn.h"
#include "support/Containers.h"
#include "support/Environment.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/ManualWatches.h"
#include "support/Moments.h"
#include "support/RegionOverride.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

using namespace std::chrono_literals;
using support::utc;
using Change = platform::PathWatcher::Change;

namespace {

// 10 March 2026, 8:00, in UTC. Somebody has connected a file.
class BridgeUpdatesTest : public testing::Test {
protected:
    BridgeUpdatesTest() { folder.write("config/korvel-today/bridge.json", "{}"); }

    void start() {
        auto ownAlarm = std::make_unique<support::ManualAlarm>();
        auto ownWatcher = std::make_unique<support::ManualWatcher>();
        alarm = ownAlarm.get();
        watcher = ownWatcher.get();
        updates = std::make_unique<center::BridgeUpdates>(bridge.call(), std::move(ownWatcher),
                                                          std::move(ownAlarm));
    }

    // The next two calls are those of an update, which succeeds.
    void expectUpdate() {
        EXPECT_EQ(bridge.next(), "update");
        bridge.answer();
        EXPECT_EQ(bridge.next(), "status --json");
        bridge.answer(status);
    }

    // As started, and with the first feed.
    void startAndPublish() {
        start();
        EXPECT_EQ(bridge.next(), "status --json");
        bridge.answer(status);
        expectUpdate();
        EXPECT_EQ(bridge.next(), "");
    }

    // A file has changed, and the time has passed after which that is looked at.
    void tellOfChange() {
        watcher->tell(Change::Path);
        queue.advance(200ms);
    }

    [[nodiscard]] bool watches(const std::string& path) const {
        return std::ranges::count(watcher->paths.files, path) == 1;
    }

    support::RegionOverride region{{"en_US", "UTC"}};
    support::TemporaryFolder folder;
    support::EnvironmentVariable config{"XDG_CONFIG_HOME", folder.path("config")};
    support::Containers containers;
    support::ManualClock clock{utc(2026, 3, 10, 8)};
    support::ManualMainQueue queue;
    BridgeStandIn bridge;
    const std::string bills = folder.write("bills.xhb", "one");
    std::string status = R"({"files": [{"path": ")" + bills + R"("}]})";
    support::ManualAlarm* alarm = nullptr;
    support::ManualWatcher* watcher = nullptr;
    std::unique_ptr<center::BridgeUpdates> updates;
};

} // namespace

TEST_F(BridgeUpdatesTest, publishesAtTheStart) {
    startAndPublish();
    EXPECT_TRUE(watches(bills));
}

TEST_F(BridgeUpdatesTest, callsNothingWhereNoFileWasEverConnected) {
    std::filesystem::remove(folder.path("config/korvel-today/bridge.json"));
    start();
    EXPECT_EQ(bridge.next(), "");
    alarm->ring();
    tellOfChange();
    EXPECT_EQ(bridge.next(), "");
}

// The last one may have been disconnected while nobody looked.
TEST_F(BridgeUpdatesTest, publishesAtTheStartAlsoWhereNoFileIsConnectedNow) {
    status = R"({"files": []})";
    startAndPublish();
}

TEST_F(BridgeUpdatesTest, seesTheFirstFileThatIsConnectedElsewhere) {
    std::filesystem::remove(folder.path("config/korvel-today/bridge.json"));
    start();
    EXPECT_TRUE(watches(folder.path("config/korvel-today/bridge.json")));
    folder.write("config/korvel-today/bridge.json", "{}");
    tellOfChange();
    expectUpdate();
    expectUpdate(); // the file, which was not watched, may have changed since
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, publishesWhenAConnectedFileChanges) {
    startAndPublish();
    folder.write("bills.xhb", "two, of another size");
    tellOfChange();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, publishesWhenAConnectedFileIsReplacedOrGone) {
    startAndPublish();
    std::filesystem::rename(folder.write("new", "two"), bills);
    tellOfChange();
    expectUpdate();
    std::filesystem::remove(bills);
    tellOfChange();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, watchesWhatAFileIncludes) {
    const std::string included = folder.write("prices.journal", "one");
    status = R"({"files": [{"path": ")" + bills + R"(", "includes": [")" + included + R"("]}]})";
    startAndPublish();
    EXPECT_TRUE(watches(included));
    folder.write("prices.journal", "another");
    tellOfChange();
    expectUpdate();
}

TEST_F(BridgeUpdatesTest, publishesWhenAFileIsConnectedElsewhere) {
    startAndPublish();
    folder.write("config/korvel-today/bridge.json", "{ }");
    tellOfChange();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, publishesAfterAnAction) {
    startAndPublish();
    const std::string log = containers.path("bridge/actions.xml");
    EXPECT_TRUE(watches(log));
    containers.write("bridge/actions.xml", "one");
    tellOfChange();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
}

// An action may have come right after it was taken.
TEST_F(BridgeUpdatesTest, publishesOnceMoreAfterTheLogWasTaken) {
    startAndPublish();
    containers.write("bridge/actions.xml", "one");
    tellOfChange();
    containers.write("bridge/actions.xml", "");
    expectUpdate();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, publishesNotWhereNothingHasChanged) {
    startAndPublish();
    tellOfChange();
    EXPECT_EQ(bridge.next(), "");
}

// A program that saves moves the old file away and writes another.
TEST_F(BridgeUpdatesTest, waitsUntilASaveIsOver) {
    startAndPublish();
    std::filesystem::remove(bills);
    watcher->tell(Change::Path);
    queue.advance(199ms);
    EXPECT_EQ(bridge.next(), "");
    folder.write("bills.xhb", "two, of another size");
    watcher->tell(Change::Path);
    queue.advance(1ms);
    expectUpdate();
    queue.advance(1s);
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, publishesOnceMoreForWhatChangesMeanwhile) {
    startAndPublish();
    folder.write("bills.xhb", "two, of another size");
    tellOfChange();
    for (const char* bytes : {"three", "four of them"}) {
        folder.write("bills.xhb", bytes);
        tellOfChange();
    }
    expectUpdate();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, publishesWhenADayBegins) {
    startAndPublish();
    EXPECT_EQ(alarm->moment, utc(2026, 3, 11));
    clock.set(utc(2026, 3, 11));
    alarm->ring();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
    EXPECT_EQ(alarm->moment, utc(2026, 3, 12));
}

// The alarm rings for both.
TEST_F(BridgeUpdatesTest, publishesWhenTheClockWasSetOrTheSystemHasSlept) {
    startAndPublish();
    clock.set(utc(2026, 3, 10, 12));
    alarm->ring();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, publishesForADayThatBeginsMeanwhile) {
    startAndPublish();
    folder.write("bills.xhb", "two, of another size");
    tellOfChange();
    alarm->ring();
    expectUpdate();
    expectUpdate();
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, publishesInAnotherTimeZone) {
    const std::string zone = folder.write("zone", "one");
    const support::RegionOverride elsewhere({"en_US", zone});
    startAndPublish();
    EXPECT_TRUE(watches(zone));
    folder.write("zone", "another");
    tellOfChange();
    expectUpdate();
}

TEST_F(BridgeUpdatesTest, goesOnAfterAFailure) {
    startAndPublish();
    folder.write("bills.xhb", "two, of another size");
    tellOfChange();
    bridge.fail("the file is cut off");
    bridge.fail("it is no JSON object");
    EXPECT_EQ(bridge.next(), "");
    EXPECT_TRUE(watches(bills));
    folder.write("bills.xhb", "three");
    tellOfChange();
    expectUpdate();
}

TEST_F(BridgeUpdatesTest, publishesWhenItIsAskedTo) {
    startAndPublish();
    bool isDone = false;
    updates->update([&](const center::BridgeResult& result) { isDone = result.isDone; });
    expectUpdate();
    EXPECT_TRUE(isDone);
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(BridgeUpdatesTest, looksNoMoreOnceItIsGone) {
    startAndPublish();
    folder.write("bills.xhb", "two, of another size");
    watcher->tell(Change::Path);
    updates.reset();
    queue.advance(1s);
    EXPECT_EQ(bridge.next(), "");
}

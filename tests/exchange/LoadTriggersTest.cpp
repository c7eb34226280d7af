#include "exchange/LoadTriggers.h"

#include "exchange/ManualTriggers.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/storage/Files.h"
#include "platform/storage/OwnReplacements.h"
#include "support/Containers.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/Moments.h"
#include "support/RegionOverride.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

using namespace std::chrono_literals;

using Change = platform::PathWatcher::Change;
namespace files = std::filesystem;

namespace {

constexpr auto settling = 100ms;
constexpr double never = std::numeric_limits<double>::infinity();

const double now = support::utc(2026, 3, 10, 8);
const double midnight = support::utc(2026, 3, 11);

TodayTransactionPtr transaction(double date) {
    TodayTransaction::Values values;
    values.date = date;
    values.planPK = QStringLiteral("plan");
    return std::make_shared<TodayTransaction>(values);
}

// A list that was loaded on 10 March 2026 at 8:00 UTC from a feed without records.
class LoadTriggersTest : public testing::Test {
protected:
    LoadTriggersTest() {
        containers.writeFeed("<array/>");
        containers.write("-/icons/glyph.png", "a picture");
        manual.triggers->setLoadNeeded([this] { ++needed; });
        load({});
    }

    void load(const std::vector<TodayTransactionPtr>& transactions) {
        manual.triggers->listWillLoad();
        manual.triggers->listDidLoad(transactions);
    }

    // The host application replaces a file, of which this process notes nothing.
    void hostWrites(const std::string& name, const std::string& text) const {
        containers.write(name + ".new", text);
        files::rename(containers.path(name + ".new"), containers.path(name));
    }

    // How many loads are needed after the watcher has told of a change.
    int neededAfter(Change change) {
        needed = 0;
        manual.watcher->tell(change);
        EXPECT_EQ(needed, 0);
        queue.advance(settling);
        return needed;
    }

    support::RegionOverride region{{"en_US", "UTC"}};
    support::Containers containers;
    support::ManualClock clock{now};
    support::ManualMainQueue queue;
    ManualTriggers manual;
    int needed = 0;
};

} // namespace

// --- files

TEST_F(LoadTriggersTest, aFeedOfTheHost) {
    hostWrites("notifications.xml", "<array><!-- --></array>");
    EXPECT_EQ(neededAfter(Change::Path), 1);
    load({});
    EXPECT_EQ(neededAfter(Change::Path), 0) << "it was loaded";
}

TEST_F(LoadTriggersTest, aFeedThatIsGone) {
    files::remove(containers.path("notifications.xml"));
    EXPECT_EQ(neededAfter(Change::Path), 1);
}

TEST_F(LoadTriggersTest, settingsOfTheHost) {
    containers.writeSettings("<dict><key>notification_days_count</key><integer>2</integer></dict>");
    EXPECT_EQ(neededAfter(Change::Path), 1);
}

TEST_F(LoadTriggersTest, anIcon) {
    EXPECT_EQ(neededAfter(Change::Entry), 1);
    load({});
    EXPECT_EQ(neededAfter(Change::Path), 0) << "it was loaded";
}

TEST_F(LoadTriggersTest, aFolderOfIconsThatAppearsLater) {
    files::remove_all(containers.path("-/icons"));
    load({});
    containers.write("-/icons/glyph.png", "a picture");
    EXPECT_EQ(neededAfter(Change::Path), 1);
}

TEST_F(LoadTriggersTest, aContainerThatAppearsLater) {
    files::rename(containers.path(), containers.folder().path("elsewhere"));
    load({});
    EXPECT_EQ(neededAfter(Change::Path), 0);
    files::rename(containers.folder().path("elsewhere"), containers.path());
    EXPECT_EQ(neededAfter(Change::Path), 1);
}

TEST_F(LoadTriggersTest, aZoneFileThatIsReplaced) {
    const std::string file = containers.folder().write("zone", "one");
    const support::RegionOverride local({"en_US", file});
    load({});
    EXPECT_EQ(neededAfter(Change::Path), 0);
    files::rename(containers.folder().write("zone.new", "another"), file);
    EXPECT_EQ(neededAfter(Change::Path), 1);
}

TEST_F(LoadTriggersTest, watchesTheIconsOfTheCurrentAccount) {
    EXPECT_EQ(manual.watcher->paths.folders, std::vector{containers.path("-/icons")});
    containers.writeSettings("<dict><key>account_pk</key><string>anna</string></dict>");
    load({});
    EXPECT_EQ(manual.watcher->paths.folders, std::vector{containers.path("anna/icons")});
}

TEST_F(LoadTriggersTest, nothingThatHasNotChanged) {
    EXPECT_EQ(neededAfter(Change::Path), 0);
}

TEST_F(LoadTriggersTest, nothingThatThisProcessWrites) {
    ASSERT_FALSE(platform::replaceFile(containers.path("notifications.xml"), "<array></array>"));
    EXPECT_EQ(neededAfter(Change::Path), 0);
    for (int i = 0; i < 200; ++i)
        platform::OwnReplacements::note({}, {}); // only the latest ones are kept
    ASSERT_FALSE(platform::replaceFile(containers.path("notifications.xml"), "<array> </array>"));
    EXPECT_EQ(neededAfter(Change::Path), 0) << "nor the next time";
}

TEST_F(LoadTriggersTest, noActionOfTheWidget) {
    containers.writeFeed("<array><dict><key>planpk</key><string>plan</string>"
                         "<key>date</key><real>1</real></dict></array>");
    files::remove_all(containers.path("-"));
    load({});
    for (const auto& action : {TodayTransactionAction::Later(1), TodayTransactionAction::Paid()}) {
        TodayWidgetLogic::performTransactionAction(*transaction(1), action, nullptr);
        EXPECT_EQ(neededAfter(Change::Path), 0);
    }
    EXPECT_TRUE(containers.has("-/actions.xml"));
}

TEST_F(LoadTriggersTest, whatTheHostHasWrittenBeforeThisProcess) {
    hostWrites("notifications.xml", "<array><!-- --></array>");
    ASSERT_FALSE(platform::replaceFile(containers.path("notifications.xml"), "<array></array>"));
    EXPECT_EQ(neededAfter(Change::Path), 1);
}

TEST_F(LoadTriggersTest, whatTheHostHasWrittenAfterThisProcess) {
    ASSERT_FALSE(platform::replaceFile(containers.path("notifications.xml"), "<array></array>"));
    hostWrites("notifications.xml", "<array><!-- --></array>");
    EXPECT_EQ(neededAfter(Change::Path), 1);
}

TEST_F(LoadTriggersTest, aChangeBetweenReadingAndTheEndOfTheLoad) {
    manual.triggers->listWillLoad();
    hostWrites("notifications.xml", "<array><!-- --></array>");
    manual.triggers->listDidLoad({});
    EXPECT_EQ(neededAfter(Change::Path), 1);
}

TEST_F(LoadTriggersTest, severalChangesAreToldOnce) {
    hostWrites("notifications.xml", "<array><!-- --></array>");
    for (int i = 0; i < 5; ++i) {
        manual.watcher->tell(i % 2 ? Change::Path : Change::Entry);
        queue.advance(settling - 1ms);
        EXPECT_EQ(needed, 0);
    }
    queue.advance(2 * settling);
    EXPECT_EQ(needed, 1);
    queue.advance(1s);
    EXPECT_EQ(needed, 1);
}

TEST_F(LoadTriggersTest, changesThatDoNotEndAreToldAfterASecond) {
    for (int i = 0; i < 99; ++i) {
        manual.watcher->tell(Change::Entry);
        queue.advance(10ms);
    }
    EXPECT_EQ(needed, 0);
    queue.advance(10ms);
    EXPECT_EQ(needed, 1);
}

TEST_F(LoadTriggersTest, followThePathsAnewAfterAChange) {
    const int before = manual.watcher->followed;
    EXPECT_EQ(neededAfter(Change::Path), 0);
    EXPECT_EQ(manual.watcher->followed, before + 1);
}

// --- moments

TEST_F(LoadTriggersTest, aTransactionThatFallsDue) {
    load({transaction(now - 1), transaction(now + 600), transaction(now + 60.5), transaction(-never)});
    EXPECT_EQ(manual.alarm->moment, now + 60.5);
    manual.alarm->ring();
    EXPECT_EQ(needed, 1);
}

TEST_F(LoadTriggersTest, aTransactionThatFellDueWhileTheListWasLoaded) {
    manual.triggers->listWillLoad();
    clock.advance(1);
    manual.triggers->listDidLoad({transaction(now + 0.5)});
    EXPECT_EQ(manual.alarm->moment, now + 0.5);
    clock.set(now);
    load({transaction(now)});
    EXPECT_EQ(manual.alarm->moment, now) << "it is not overdue yet";
}

TEST_F(LoadTriggersTest, theNextDay) {
    EXPECT_EQ(manual.alarm->moment, midnight);
    load({transaction(midnight + 1), transaction(now - 1), transaction(never), transaction(std::nan(""))});
    EXPECT_EQ(manual.alarm->moment, midnight);
    manual.alarm->ring();
    EXPECT_EQ(needed, 1);
}

TEST_F(LoadTriggersTest, theNextDayOfTheZone) {
    const support::RegionOverride local({"en_US", "KOREA-9"});
    load({});
    EXPECT_EQ(manual.alarm->moment, support::utc(2026, 3, 10, 15));
}

TEST_F(LoadTriggersTest, noMomentOfAClockThatIsAbsurd) {
    clock.set(1e300);
    load({});
    EXPECT_EQ(manual.alarm->moment, never);
}

// --- the end

TEST_F(LoadTriggersTest, nothingOnceTheyHaveStopped) {
    hostWrites("notifications.xml", "<array><!-- --></array>");
    manual.watcher->tell(Change::Entry);
    manual.triggers->stop();
    EXPECT_TRUE(manual.watcher->paths.files.empty());
    EXPECT_EQ(manual.alarm->moment, never);
    queue.advance(1s);
    manual.alarm->ring();
    EXPECT_EQ(needed, 0);
    load({});
    EXPECT_EQ(neededAfter(Change::Entry), 1) << "until the next load";
}

TEST_F(LoadTriggersTest, nothingOnceTheyAreGone) {
    manual.watcher->tell(Change::Entry);
    manual.triggers.reset();
    queue.advance(1s);
    EXPECT_EQ(needed, 0);
}

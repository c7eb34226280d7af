#include "center/Reminder.h"

#include "support/Environment.h"
#include "support/ManualClock.h"
#include "support/ManualWatches.h"
#include "support/Moments.h"
#include "support/RegionOverride.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using center::Reminder;
using support::utc;
using Change = platform::PathWatcher::Change;

namespace {

constexpr double never = std::numeric_limits<double>::infinity();

// 10 March 2026, 8:00, in UTC, which is an hour too early, and one overdue transaction.
class ReminderTest : public testing::Test {
protected:
    ReminderTest() { start(); }

    // Starts the program (again), which is told of a transaction.
    void start() {
        auto ownAlarm = std::make_unique<support::ManualAlarm>();
        auto ownWatcher = std::make_unique<support::ManualWatcher>();
        alarm = ownAlarm.get();
        watcher = ownWatcher.get();
        reminder = std::make_unique<Reminder>(file, std::move(ownAlarm), std::move(ownWatcher));
        reminder->setRemind([this](int overdue, int dueToday) { reminded.emplace_back(overdue, dueToday); });
        reminder->setCounts(1, 0);
    }

    // The clock reaches the moment of the alarm.
    void sleepUntilAlarm() {
        clock.set(alarm->moment);
        alarm->ring();
    }

    // The clock is set, or the system wakes at this moment.
    void setClock(double now) {
        clock.set(now);
        alarm->ring();
    }

    void writeLastDay(const std::string& text) {
        folder.write("state/reminded", text);
        start();
    }

    // Whether the user has been reminded since the last question.
    [[nodiscard]] bool wasReminded() { return !std::exchange(reminded, {}).empty(); }

    support::RegionOverride region{{"en_US", "UTC"}};
    support::TemporaryFolder folder;
    const std::string file = folder.path("state/reminded");
    support::ManualClock clock{utc(2026, 3, 10, 8)};
    std::unique_ptr<Reminder> reminder;
    support::ManualAlarm* alarm = nullptr;
    support::ManualWatcher* watcher = nullptr;
    std::vector<std::pair<int, int>> reminded;
};

} // namespace

// --- the first moment

TEST_F(ReminderTest, remindsAtNine) {
    EXPECT_FALSE(wasReminded());
    EXPECT_EQ(alarm->moment, utc(2026, 3, 10, 9));
    reminder->setCounts(2, 1);
    sleepUntilAlarm();
    EXPECT_EQ(reminded, (std::vector<std::pair<int, int>>{{2, 1}}));
}

TEST_F(ReminderTest, remindsAtOnceAfterNine) {
    reminder->setCounts(0, 0);
    setClock(utc(2026, 3, 10, 15));
    EXPECT_FALSE(wasReminded());
    reminder->setCounts(0, 1);
    EXPECT_TRUE(wasReminded());
}

TEST_F(ReminderTest, remindsOfWhatFallsDueLater) {
    reminder->setCounts(0, 0);
    sleepUntilAlarm();
    EXPECT_FALSE(wasReminded());
    clock.advance(3600);
    reminder->setCounts(1, 0);
    EXPECT_TRUE(wasReminded());
}

TEST_F(ReminderTest, waitsUntilTheSessionIsInUse) {
    reminder->setSessionInUse(false);
    sleepUntilAlarm();
    EXPECT_FALSE(wasReminded());
    clock.advance(600);
    reminder->setSessionInUse(true);
    EXPECT_TRUE(wasReminded());
}

TEST_F(ReminderTest, waitsForNineWhenTheSessionComesIntoUseEarlier) {
    reminder->setSessionInUse(false);
    reminder->setSessionInUse(true);
    EXPECT_FALSE(wasReminded());
    EXPECT_EQ(alarm->moment, utc(2026, 3, 10, 9));
}

TEST_F(ReminderTest, hasTheTimeOfTheSettings) {
    reminder->setSettings({true, 8 * 60 + 30});
    EXPECT_EQ(alarm->moment, utc(2026, 3, 10, 8, 30));
    EXPECT_FALSE(wasReminded());
    reminder->setSettings({true, 8 * 60});
    EXPECT_TRUE(wasReminded());
}

TEST_F(ReminderTest, isSilentWhereItIsOff) {
    reminder->setSettings({false, 0});
    EXPECT_EQ(alarm->moment, never);
    setClock(utc(2026, 3, 10, 12));
    EXPECT_FALSE(wasReminded());
    reminder->setSettings({true, 9 * 60});
    EXPECT_TRUE(wasReminded());
}

// --- once a day

TEST_F(ReminderTest, remindsOnceADay) {
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
    for (int i = 1; i < 20; ++i) {
        clock.advance(600);
        reminder->setCounts(i % 2, i);
        reminder->setSessionInUse(i % 3 == 0);
        reminder->setSettings({true, i});
    }
    EXPECT_FALSE(wasReminded());
}

TEST_F(ReminderTest, remindsOnTheNextDay) {
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
    EXPECT_EQ(alarm->moment, utc(2026, 3, 11, 9));
    clock.set(utc(2026, 3, 11, 0, 1));
    reminder->setCounts(3, 0);
    EXPECT_FALSE(wasReminded()) << "it is after midnight, but not yet nine";
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
    EXPECT_EQ(folder.read("state/reminded"), "2026-03-11\n");
}

TEST_F(ReminderTest, remembersTheDayOverARestart) {
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
    EXPECT_EQ(folder.read("state/reminded"), "2026-03-10\n");
    start();
    EXPECT_FALSE(wasReminded());
    EXPECT_EQ(alarm->moment, utc(2026, 3, 11, 9));
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
}

TEST_F(ReminderTest, remindsOnceADayWithoutAFileToKeepItIn) {
    folder.write("state", "a file in the place of the folder");
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
    reminder->setCounts(4, 0);
    EXPECT_FALSE(wasReminded());
}

TEST_F(ReminderTest, takesAFileThatIsNoDayForNone) {
    clock.set(utc(2026, 3, 10, 10));
    for (const char* text : {"", "\n", "2026-3-10", "2026-03-32\n", "2026-02-29\n", "yesterday",
                             "2026-03-10\n\n", "2026/03/10", "+026-03-10"}) {
        writeLastDay(text);
        EXPECT_TRUE(wasReminded()) << text;
    }
    writeLastDay("2026-03-10");
    EXPECT_FALSE(wasReminded()) << "a line without its end is a day";
}

// --- clocks and zones

TEST_F(ReminderTest, isSilentOnADayThatComesAgain) {
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
    setClock(utc(2026, 3, 10, 8, 30));
    EXPECT_FALSE(wasReminded());
    sleepUntilAlarm();
    EXPECT_FALSE(wasReminded()) << "the same day";
    setClock(utc(2026, 3, 9, 12));
    EXPECT_FALSE(wasReminded()) << "the day before";
    setClock(utc(2026, 3, 10, 12));
    EXPECT_FALSE(wasReminded());
    setClock(utc(2026, 3, 11, 12));
    EXPECT_TRUE(wasReminded());
}

TEST_F(ReminderTest, forgetsADayThatAWrongClockHasTold) {
    setClock(utc(2030, 1, 1, 12));
    EXPECT_TRUE(wasReminded());
    setClock(utc(2026, 3, 10, 12));
    EXPECT_TRUE(wasReminded());
    setClock(utc(2026, 3, 10, 13));
    EXPECT_FALSE(wasReminded());
}

TEST_F(ReminderTest, remindsOnceOnTheDayAfterASleepOfDays) {
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
    setClock(utc(2026, 3, 15, 7));
    EXPECT_FALSE(wasReminded());
    setClock(utc(2026, 3, 15, 11));
    EXPECT_EQ(reminded.size(), 1U);
}

TEST_F(ReminderTest, hasTheMorningOfTheZone) {
    const support::RegionOverride local({"en_US", "America/New_York"});
    start();
    EXPECT_EQ(alarm->moment, utc(2026, 3, 10, 9 + 4));
}

TEST_F(ReminderTest, looksAgainWhenTheZoneIsAnother) {
    EXPECT_EQ(watcher->paths.files.size(), 1U);
    const support::RegionOverride local({"en_US", "Asia/Tokyo"});
    watcher->tell(Change::Path);
    EXPECT_TRUE(wasReminded()) << "it is 17:00 there";
    EXPECT_EQ(watcher->paths.files, std::vector<std::string>{"/usr/share/zoneinfo/Asia/Tokyo"});
    EXPECT_EQ(alarm->moment, utc(2026, 3, 11, 9 - 9));
}

TEST_F(ReminderTest, isSilentOnTheDayThatAFlightToTheWestBringsAgain) {
    const support::RegionOverride auckland({"en_US", "Pacific/Auckland"});
    start();
    EXPECT_TRUE(wasReminded()) << "21:00 of the 10th";
    const support::RegionOverride honolulu({"en_US", "Pacific/Honolulu"});
    setClock(utc(2026, 3, 10, 9));
    watcher->tell(Change::Path);
    EXPECT_FALSE(wasReminded()) << "23:00 of the 9th";
    setClock(utc(2026, 3, 10, 20));
    EXPECT_FALSE(wasReminded()) << "10:00 of the 10th";
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded()) << "9:00 of the 11th";
}

TEST_F(ReminderTest, keepsTheTimeOfDayWhenTheClocksChange) {
    const support::RegionOverride berlin({"en_US", "Europe/Berlin"});
    clock.set(utc(2026, 3, 28, 20));
    start();
    EXPECT_TRUE(wasReminded());
    EXPECT_EQ(alarm->moment, utc(2026, 3, 29, 9 - 2)) << "an hour less since 2:00";
    clock.set(utc(2026, 10, 24, 20));
    start();
    EXPECT_EQ(alarm->moment, utc(2026, 10, 25, 9 - 1)) << "an hour more since 3:00";
}

TEST_F(ReminderTest, remindsOnceWhereTheTimeIsSkippedOrRepeated) {
    const support::RegionOverride berlin({"en_US", "Europe/Berlin"});
    clock.set(utc(2026, 3, 28, 20));
    start();
    reminder->setSettings({true, 2 * 60 + 30});
    EXPECT_EQ(alarm->moment, utc(2026, 3, 29, 1, 30)) << "3:30 in place of 2:30";
    clock.set(utc(2026, 10, 24, 20));
    start();
    reminder->setSettings({true, 2 * 60 + 30});
    EXPECT_EQ(alarm->moment, utc(2026, 10, 25, 0, 30)) << "the first 2:30";
    reminded.clear();
    sleepUntilAlarm();
    EXPECT_TRUE(wasReminded());
    setClock(utc(2026, 10, 25, 1, 30));
    EXPECT_FALSE(wasReminded()) << "the second 2:30";
}

// Clocks go back by an hour at half past midnight, so that the time has been shown when the old day comes
// again.
TEST_F(ReminderTest, doesNotWakeAgainAndAgainWhereMidnightComesTwice) {
    const support::RegionOverride local({"en_US", "AAA0BBB,J60/0,J300/0:30"});
    const double change = utc(2026, 10, 26, 23, 30); // half past midnight of 27 October by summer time
    start();
    reminder->setSettings({true, 15});
    setClock(change - 1);
    setClock(change);
    EXPECT_GE(alarm->moment, change + 15 * 60);
    EXPECT_LE(alarm->moment, change + 45 * 60);
}

TEST_F(ReminderTest, isSilentWithAnAbsurdClock) {
    for (const double moment : {1e300, -1e300, std::nan("")}) {
        setClock(moment);
        EXPECT_FALSE(wasReminded());
        EXPECT_EQ(alarm->moment, never);
    }
}

TEST_F(ReminderTest, keepsItsFileInTheFolderOfStates) {
    const support::EnvironmentVariable home("HOME", "/nowhere");
    const support::EnvironmentVariable state("XDG_STATE_HOME", "/state");
    EXPECT_EQ(Reminder::defaultFile(), "/state/korvel-today/reminded");
    state.set(nullptr);
    EXPECT_EQ(Reminder::defaultFile(), "/nowhere/.local/state/korvel-today/reminded");
}

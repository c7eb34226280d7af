#include "bridge/Database.h"

#include "bridge/BridgeTest.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace bridge {

namespace {

using exchange::ActionType;

const Day tenth = dayOf("2026-03-10");
const Day first = dayOf("2026-04-01");
const LoggedRecord paid{ActionType::Paid, "p", 100.5, 0};

class DatabaseTest : public BridgeTest {
protected:
    DatabaseTest() { EXPECT_EQ(database.open(), ""); }

    bool add(const LoggedRecord& record) {
        database.begin();
        const bool isNew = database.addAction(record, first, first, tenth);
        EXPECT_EQ(database.commit(), "");
        return isNew;
    }
    void publish(const std::vector<PublishedRecord>& records) {
        database.begin();
        database.publish(records, tenth);
        EXPECT_EQ(database.commit(), "");
    }

    Database database;
};

} // namespace

TEST_F(DatabaseTest, keepsAReadingUntilTheNextSoundOne) {
    EXPECT_FALSE(database.reading("a").isThere);
    database.keepFault("a", "It is cut off.");
    EXPECT_FALSE(database.reading("a").isThere);
    EXPECT_EQ(database.reading("a").fault, "It is cut off.");
    database.keepReading("a", tenth, first, {planOf("1", {"2026-03-12"})});
    EXPECT_EQ(database.reading("a").fault, "");
    database.keepFault("a", "It is encrypted.");
    const KeptReading reading = database.reading("a");
    EXPECT_TRUE(reading.isThere);
    EXPECT_EQ(reading.today, tenth);
    EXPECT_EQ(reading.last, first);
    ASSERT_EQ(reading.plans.size(), 1U);
    EXPECT_EQ(reading.plans[0].key, "1");
    EXPECT_EQ(reading.fault, "It is encrypted.");
    database.keepIncludes("a", {"/c", "/b", "/b"});
    database.keepIncludes("other", {"/d"});
    database.keepReading("a", tenth, first, {});
    EXPECT_EQ(database.includes("a"), (std::vector<std::string>{"/b", "/c"}));
    database.dropReading("a");
    EXPECT_FALSE(database.reading("a").isThere);
    EXPECT_TRUE(database.includes("a").empty());
    EXPECT_EQ(database.includes("other"), (std::vector<std::string>{"/d"}));
    EXPECT_EQ(database.error(), "");
}

TEST_F(DatabaseTest, givesAnActionBackAsItWas) {
    const LoggedRecord later{ActionType::Later, "homebank:1f:2", -0.1, -3};
    database.begin();
    EXPECT_TRUE(database.addAction(later, first, first + std::chrono::days(2), tenth));
    EXPECT_EQ(database.commit(), "");
    const auto actions = database.openActions();
    ASSERT_EQ(actions.size(), 1U);
    EXPECT_EQ(actions[0].record.type, ActionType::Later);
    EXPECT_EQ(actions[0].record.plan, "homebank:1f:2");
    EXPECT_EQ(actions[0].record.date, -0.1);
    EXPECT_EQ(actions[0].record.parameter, -3);
    EXPECT_EQ(actions[0].nominal, first);
    EXPECT_EQ(actions[0].day, first + std::chrono::days(2));
    EXPECT_EQ(actions[0].done, tenth);
    EXPECT_EQ(actions[0].state, ActionState::Open);
}

TEST_F(DatabaseTest, countsOnceWhatIsHandedOutAgain) {
    publish({{"p", 100.5, first, first}});
    EXPECT_TRUE(add(paid));
    EXPECT_FALSE(add(paid));
    publish({});
    EXPECT_FALSE(add(paid));
    database.setState(1, ActionState::Entered);
    EXPECT_FALSE(add(paid));
    EXPECT_EQ(database.openActions().size(), 0U);
}

TEST_F(DatabaseTest, countsAgainWhatDiffersOrWasUndone) {
    EXPECT_TRUE(add(paid));
    EXPECT_TRUE(add({ActionType::Delete, "p", 100.5, 0}));
    EXPECT_TRUE(add({ActionType::Paid, "q", 100.5, 0}));
    EXPECT_TRUE(add({ActionType::Paid, "p", 100.50000000000001, 0}));
    EXPECT_TRUE(add({ActionType::Paid, "p", 100.5, 1}));
    EXPECT_EQ(database.lastOpenAction()->number, 5);
    database.setState(1, ActionState::Undone);
    EXPECT_TRUE(add(paid));
    EXPECT_FALSE(add(paid));
}

TEST_F(DatabaseTest, countsAgainWhatTheFeedHasShownAnew) {
    publish({{"p", 100.5, first, first}});
    EXPECT_TRUE(add(paid));
    publish({{"p", 100.5, first, first}});
    EXPECT_TRUE(add(paid));
    EXPECT_FALSE(add(paid));
}

TEST_F(DatabaseTest, remembersWhatEarlierFeedsHeld) {
    publish({{"p", 100.5, first, first}, {"p", 90, tenth, tenth}});
    publish({{"p", 200, first + std::chrono::days(31), first}});
    EXPECT_EQ(database.published("p", 100.5)->nominal, first);
    EXPECT_FALSE(database.published("q", 100.5));
    ASSERT_EQ(database.publishedNow().size(), 1U);
    EXPECT_EQ(database.publishedNow()[0].date, 200);
    database.begin();
    database.publish({}, tenth + std::chrono::days(367));
    EXPECT_EQ(database.commit(), "");
    EXPECT_FALSE(database.published("p", 90));
    EXPECT_TRUE(database.published("p", 100.5));
}

TEST_F(DatabaseTest, holdsNothingOfWhatWasNotCommitted) {
    {
        Database other;
        ASSERT_EQ(other.open(), "");
        other.begin();
        EXPECT_TRUE(other.addAction(paid, first, first, tenth));
    }
    EXPECT_TRUE(database.openActions().empty());
    EXPECT_TRUE(add(paid));
}

TEST_F(DatabaseTest, isOneFileAtRest) {
    EXPECT_TRUE(add(paid));
    const auto folder = std::filesystem::path(homePath(databaseName)).parent_path();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
}

using DamagedDatabaseTest = BridgeTest;

TEST_F(DamagedDatabaseTest, isRefusedAndNotChanged) {
    std::string sound;
    {
        Database database;
        ASSERT_EQ(database.open(), "");
        database.begin();
        database.keepReading("a", tenth, first, {planOf("1", {"2026-03-12"})});
        ASSERT_EQ(database.commit(), "");
        sound = readHome(databaseName);
    }
    const auto changed = [&](std::size_t offset, std::string_view bytes) {
        std::string copy = sound;
        return copy.replace(offset, bytes.size(), bytes);
    };
    constexpr std::size_t userVersion = 60; // big-endian, in the header of the file
    constexpr std::size_t application = 68;
    const struct {
        const char* name;
        std::string bytes;
        const char* sentence;
    } rows[] = {
        {"text", "this is no database, but a text that is long enough", "file is not a database"},
        {"cut off", sound.substr(0, sound.size() / 2), "database disk image is malformed"},
        {"page overwritten", changed(sound.size() - 4096, std::string(4096, 'x')), "it "},
        {"newer", changed(userVersion, std::string_view("\0\0\0\2", 4)),
         "it was written by a newer version of this program (2; this one knows 1)"},
        {"other program", changed(application, std::string_view("\0\0\0\1", 4)),
         "it is a database of another program"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        writeHome(databaseName, row.bytes);
        Database database;
        const std::string sentence = database.open();
        EXPECT_TRUE(sentence.starts_with(homePath(databaseName) + ": " + row.sentence)) << sentence;
        EXPECT_EQ(database.commit(), sentence);
        EXPECT_EQ(readHome(databaseName), row.bytes);
    }
}

TEST_F(DamagedDatabaseTest, isMadeWhereTheFileIsEmpty) {
    writeHome(databaseName, "");
    Database database;
    EXPECT_EQ(database.open(), "");
    EXPECT_TRUE(database.openActions().empty());
    EXPECT_EQ(database.error(), "");
}

} // namespace bridge

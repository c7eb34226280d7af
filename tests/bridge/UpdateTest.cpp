#include "bridge/CommandTest.h"

#include "bridge/LocalDays.h"
#include "bridge/Publication.h"
#include "exchange/Days.h"
#include "exchange/FeedReader.h"
#include "exchange/SharedSettings.h"
#include "platform/plist/Writer.h"
#include "platform/storage/FileSystemCalls.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace bridge {

namespace plist = platform::plist;

namespace {

using UpdateTest = CommandTest;
using Lines = std::vector<std::string>;

const std::string rentFile = "Rent.plans";

} // namespace

TEST_F(UpdateTest, makesTheContainerAndFillsIt) {
    removeContainer();
    connect(rentFile, {planOf("1", {"2026-03-01", "2026-03-12"})});
    EXPECT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-03-01", "1 2026-03-12"}));
    EXPECT_EQ(*settings().find("account_pk"), plist::Value("bridge"));
    EXPECT_EQ(*settings().find("notification_days_count"), plist::Value(std::int64_t(20)));
    EXPECT_EQ(read("bridge/icons/planned.png"), "PNG of planned");
    EXPECT_EQ(out + err, "");
}

TEST_F(UpdateTest, mergesFilesAndKeepsTheirPlansApart) {
    const Plan plan = planOf("1", {"2026-03-12"});
    connect("A.plans", {plan});
    connect("B.plans", {plan, planOf("2", {"2026-03-11"})});
    EXPECT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"2 2026-03-11", "1 2026-03-12", "1 2026-03-12"}));
    const auto records = readRecords();
    EXPECT_NE(*records[1].find("planpk"), *records[2].find("planpk"));
    act(records[1], 1);
    EXPECT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"2 2026-03-11", "1 2026-03-12"}));
    EXPECT_EQ(*readRecords()[1].find("planpk"), *records[2].find("planpk"));
}

TEST_F(UpdateTest, writesNothingThatIsTheSame) {
    connect(rentFile, {planOf("1", {"2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    const auto times = [&] {
        std::vector<std::filesystem::file_time_type> result;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(container))
            result.push_back(entry.last_write_time());
        return result;
    };
    for (const auto& entry : std::filesystem::recursive_directory_iterator(container))
        std::filesystem::last_write_time(entry, std::filesystem::file_time_type());
    const auto before = times();
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(times(), before);
    EXPECT_GE(before.size(), 3U);
}

TEST_F(UpdateTest, keepsWhatIsShownOfAFileThatIsFaultyNow) {
    connect("A.plans", {planOf("1", {"2026-03-12"})});
    connect("B.plans", {planOf("2", {"2026-03-13"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    writeHome("A.plans", "cut o");
    writePlans("B.plans", {planOf("2", {"2026-03-14"})});
    EXPECT_EQ(run({"update"}), 1);
    EXPECT_EQ(err, "korvel-today-bridge: " + homePath("A.plans") + " is damaged\n");
    EXPECT_EQ(shown(), (Lines{"1 2026-03-12", "2 2026-03-14"}));
    std::filesystem::remove(homePath("A.plans"));
    EXPECT_EQ(run({"update"}), 1);
    EXPECT_EQ(err,
              "korvel-today-bridge: " + homePath("A.plans") + " cannot be read: No such file or directory\n");
    EXPECT_EQ(shown(), (Lines{"1 2026-03-12", "2 2026-03-14"}));
}

TEST_F(UpdateTest, showsPlansThatHaveChangedOrVanished) {
    connect(rentFile, {planOf("1", {"2026-03-12"}), planOf("2", {"2026-03-13"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    Plan plan = planOf("2", {"2026-03-15"});
    plan.name = "Other name";
    writePlans(rentFile, {plan});
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"2 2026-03-15"}));
    EXPECT_EQ(*readRecords()[0].find("name"), plist::Value("Other name"));
}

TEST_F(UpdateTest, hidesAPaidOccurrenceUntilTheFileNoLongerListsIt) {
    connect(rentFile, {planOf("1", {"2026-03-12", "2026-04-05"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    act(readRecords()[0], 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-04-05"}));
    EXPECT_EQ(read("bridge/actions.xml"), *plist::writeXml(plist::Value(plist::Array())));
    EXPECT_EQ(countOpen(), 1U);
    writePlans(rentFile, {planOf("1", {"2026-04-05"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-04-05"}));
    EXPECT_EQ(countOpen(), 0U);
    // It was not entered after all.
    writePlans(rentFile, {planOf("1", {"2026-03-12", "2026-04-05"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-03-12", "1 2026-04-05"}));
    act(readRecords()[0], 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-04-05"}));
}

TEST_F(UpdateTest, postponesFromTheDayOfTheAction) {
    connect(rentFile, {planOf("1", {"2026-03-01"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    clock.set(exchange::utc(2026, 3, 30, 12));
    act(readRecords()[0], 2, 3);
    clock.set(exchange::utc(2026, 4, 1, 12));
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-04-02"}));
    // A log from the future was changed today at the latest.
    act(readRecords()[0], 2, 7);
    clock.set(exchange::utc(2026, 3, 31, 12));
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-04-07"}));
}

TEST_F(UpdateTest, knowsAnOccurrenceThatThePanelHasMoved) {
    connect(rentFile, {planOf("1", {"2026-03-01", "2026-03-12"}), planOf("2", {"2026-03-01"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    // The panel moves the record to 00:00, where the user acts on it again before the next update.
    auto record = readRecords()[0];
    act(record, 2, 3);
    record.set("date", plist::Value(exchange::utc(2026, 3, 13)));
    act(record, 2, 7);
    record.set("date", plist::Value(exchange::utc(2026, 3, 17)));
    act(record, 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"2 2026-03-01", "1 2026-03-12"}));
}

// Both are postponed to one date, one after the other, and paid there.
TEST_F(UpdateTest, tellsMovedOccurrencesOfOneDateApart) {
    connect(rentFile, {planOf("1", {"2026-03-01", "2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    for (int count = 2; count > 0; --count) {
        auto record = readRecords()[0];
        act(record, 2, 3);
        record.set("date", plist::Value(exchange::utc(2026, 3, 13)));
        act(record, 1);
        ASSERT_EQ(run({"update"}), 0) << err;
        EXPECT_EQ(shown().size(), static_cast<std::size_t>(count - 1));
    }
}

TEST_F(UpdateTest, deletesLaterOccurrencesUntilThatIsUndone) {
    connect(rentFile, {planOf("1", {"2026-03-01", "2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    act(readRecords()[1], 3, 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-03-01"}));
    writePlans(rentFile, {planOf("1", {"2026-03-12", "2026-04-05"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), Lines{});
    EXPECT_EQ(run({"undo"}), 0) << err;
    EXPECT_EQ(out, "taken back: delete-future  2026-03-12  Plan 1\n");
    EXPECT_EQ(shown(), (Lines{"1 2026-03-12", "1 2026-04-05"}));
}

TEST_F(UpdateTest, takesNothingAndChangesNothingOfAnotherHost) {
    connect(rentFile, {planOf("1", {"2026-03-12"})});
    const std::string log = exchange::arrayFile("<string>theirs</string>");
    const auto all = [&] {
        std::string text;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(scratch))
            if (entry.is_regular_file() && entry.path().extension() != ".sqlite")
                text += entry.path().string() + ":" +
                        read("../" + entry.path().string().substr(scratch.size())).value_or("");
        return text;
    };
    const plist::Value foreign(exchange::recordOf("p", 5));
    setSettings({{"account_pk", plist::Value("anna")}});
    write("bridge/actions.xml", log);
    for (const auto& bytes :
         {std::string("<plist><array>"), *plist::writeXml(plist::Value(plist::Array({foreign}))),
          *plist::writeXml(plist::Value(plist::Array()))}) {
        write("notifications.xml", bytes);
        const std::string before = all();
        EXPECT_EQ(run({"update"}), 1);
        EXPECT_TRUE(err.starts_with("korvel-today-bridge: " + path("notifications.xml: the feed "))) << err;
        EXPECT_EQ(run({"undo"}), 1);
        EXPECT_EQ(all(), before);
    }
}

TEST_F(UpdateTest, needsAFile) {
    removeContainer();
    EXPECT_EQ(run({"update"}), 1);
    EXPECT_EQ(err, "korvel-today-bridge: no file is connected; see korvel-today-bridge sources\n");
    EXPECT_FALSE(std::filesystem::exists(container));
    connect(rentFile, {planOf("1", {"2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(run({"disconnect", homePath(rentFile)}), 0) << err;
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), Lines{});
}

TEST_F(UpdateTest, setsTheLargestCountOfDaysThatIsNotCut) {
    for (const char* locale : {"en_US", "fa_IR", "th_TH@calendar=buddhist"})
        for (int day = 0; day < 70; ++day) {
            region.emplace(platform::Region{locale, "UTC"});
            clock.set(exchange::utc(2026, 3, 1, 12) + day * exchange::day);
            for (const std::int64_t wanted : {0, 7, 31}) {
                const std::int64_t count = uncutDayCount(wanted);
                const auto limit = [&](std::int64_t days) {
                    return std::get<double>(exchange::limitForDayCount(days));
                };
                const double today = *exchange::startOfDayFromToday(0);
                EXPECT_EQ(limit(count), today + static_cast<double>(count + 1) * exchange::day - 1);
                if (count < wanted) {
                    EXPECT_LT(limit(count + 1), today + static_cast<double>(count + 1) * exchange::day);
                }
            }
        }
    clock.set(exchange::utc(2026, 3, 31, 12));
    region.emplace(platform::Region{"en_US", "UTC"});
    EXPECT_EQ(uncutDayCount(31), -1);
}

TEST_F(UpdateTest, movesNothingWhenTheZoneChanges) {
    connect(rentFile, {planOf("1", {"2026-03-12"}), planOf("2", {"2026-03-14"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    act(readRecords()[0], 1);
    act(readRecords()[1], 2, 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"2 2026-03-11"}));
    region.emplace(platform::Region{"en_US", "Pacific/Pago_Pago"});
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"2 2026-03-11"}));
    EXPECT_EQ(*readRecords()[0].find("date"), plist::Value(exchange::utc(2026, 3, 12, 10, 59, 59)));
}

TEST_F(UpdateTest, keepsBesideTheLogWhatIsNoAction) {
    connect(rentFile, {planOf("1", {"2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    act(readRecords()[0], 1);
    const std::string log = read("bridge/actions.xml").value();
    const std::string odd = std::string(log).insert(log.find("\t<dict>"), "\t<string>what</string>\n");
    write("bridge/actions.xml", odd);
    EXPECT_EQ(run({"update"}), 0);
    EXPECT_EQ(err, "korvel-today-bridge: " + path("bridge/actions.xml.not-understood") +
                       ": record 1 is no action; it is kept here, the others count\n");
    EXPECT_EQ(read("bridge/actions.xml.not-understood"), odd);
    EXPECT_EQ(shown(), Lines{});
    write("bridge/actions.xml", "<plist><array>");
    EXPECT_EQ(run({"update"}), 0);
    EXPECT_EQ(err, "korvel-today-bridge: " + path("bridge/actions.xml.not-understood-2") +
                       ": the log is no array of records; it is kept here\n");
}

// A file is renamed into the place of one that is being read.
TEST_F(UpdateTest, readsAFileThatIsReplacedMeanwhileWhole) {
    class Replacing final : public platform::FileSystemCalls {
    public:
        explicit Replacing(std::string from, std::string to)
            : from_(std::move(from))
            , to_(std::move(to)) {
            setCurrent(this);
        }
        ~Replacing() override { setCurrent(nullptr); }
        ssize_t read(int file, void* bytes, std::size_t count) override {
            const ssize_t result = FileSystemCalls::read(file, bytes, std::min(count, std::size_t{20}));
            std::error_code ignored; // it is there once
            if (result > 0 && *static_cast<const char*>(bytes) == '[')
                std::filesystem::rename(from_, to_, ignored);
            return result;
        }

    private:
        std::string from_;
        std::string to_;
    };
    connect(rentFile, {planOf("1", {"2026-03-12"})});
    writePlans("new", {planOf("1", {"2026-03-14"}), planOf("2", {"2026-03-14"})});
    {
        const Replacing replacing(homePath("new"), homePath(rentFile));
        ASSERT_EQ(run({"update"}), 0) << err;
    }
    EXPECT_FALSE(std::filesystem::exists(homePath("new")));
    EXPECT_EQ(shown(), (Lines{"1 2026-03-12"}));
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"1 2026-03-14", "2 2026-03-14"}));
}

} // namespace bridge

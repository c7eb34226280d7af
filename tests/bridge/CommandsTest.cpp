#include "bridge/CommandTest.h"

#include "bridge/Configuration.h"
#include "model/GroupIdentifiers.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>

namespace bridge {

namespace plist = platform::plist;

namespace {

using CommandsTest = CommandTest;
using Json = nlohmann::json;

const std::string rentFile = "Rent.plans";

} // namespace

// The folder of containers, which tests give first, is two arguments.
TEST_F(CommandsTest, wrongUsageIsToldWithItsPlace) {
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } rows[] = {
        {{}, "3: a command is missing"},
        {{"publish"}, "3: unknown command publish"},
        {{"connect"}, "4: FILE is missing"},
        {{"connect", "a", "b"}, "5: connect has no place for b"},
        {{"update", "now"}, "4: update has no place for now"},
        {{"update", "--fast"}, "4: unknown option --fast"},
        {{"update", "--json"}, "4: --json does not go with update"},
        {{"--json", "status", "--json"}, "5: --json is given twice"},
        {{"help", "publish"}, "4: unknown command publish"},
        {{"help", "update", "status"}, "5: help has no place for status"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(run(row.arguments), 2);
        EXPECT_EQ(err, std::string("korvel-today-bridge: argument ") + row.sentence +
                           "; see korvel-today-bridge --help\n");
        EXPECT_EQ(out, "");
    }
}

TEST_F(CommandsTest, helpIsOfAllCommandsOrOfOne) {
    ASSERT_EQ(run({"--help"}), 0) << err;
    const std::string all = out;
    EXPECT_NE(all.find("  connect FILE [--json] "), all.npos) << all;
    for (const char* word : {"help", "-h"}) {
        ASSERT_EQ(run({word}), 0) << err;
        EXPECT_EQ(out, all);
    }
    ASSERT_EQ(run({"help", "connect"}), 0) << err;
    const std::string ofConnect = out;
    EXPECT_TRUE(ofConnect.starts_with("  korvel-today-bridge connect FILE [--json] ")) << ofConnect;
    EXPECT_EQ(ofConnect.find("undo"), ofConnect.npos) << ofConnect;
    ASSERT_EQ(run({"connect", "--help"}), 0) << err;
    EXPECT_EQ(out, ofConnect);
    ASSERT_EQ(run({"help", "--json"}), 0) << err;
    EXPECT_EQ(Json::parse(out)["program"], "korvel-today-bridge");
    EXPECT_EQ(Json::parse(out)["commands"][1]["operands"], Json({"FILE"}));
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_TRUE(out.starts_with("korvel-today-bridge ")) << out;
}

TEST_F(CommandsTest, sourcesAreFoundInListsAndUsualFolders) {
    const std::string plans = "[]";
    writeHome("In home.plans", plans);
    writeHome("Documents/In documents.plans", plans);
    writeHome("Documents/deep/Below.plans", plans);
    writeHome("Documents/Copy.20261121093000.plans", plans);
    writeHome("Documents/Other.plans", "no plans");
    writeHome("Documents/Other.txt", plans);
    writeHome("far/away/Re cent.plans", plans);
    writeHome("far/away/Settings.plans", plans);
    writeHome("far/away/Journal.plans", plans);
    std::filesystem::create_symlink(homePath("In home.plans"), homePath("Link.plans"));
    writeHome(".local/share/recently-used.xbel", R"(<?xml version="1.0"?><xbel version="1.0">
        <bookmark href="file://)" + homePath("far/away/Re%20cent.plans") +
                                                     R"("/><bookmark href="file:///nowhere/X.plans"/>
        <bookmark href="https://example.org/X.plans"/></xbel>)");
    writeHome(".config/kmymoneyrc", "[Recent Files]\nFile1[$e]=$HOME/far/away/Settings.plans\nName1[$e]=X\n");
    const support::EnvironmentVariable journal("LEDGER_FILE", homePath("far/away/Journal.plans"));
    connect("Documents/In documents.plans", {});
    ASSERT_EQ(run({"sources"}), 0) << err;
    EXPECT_EQ(out, "Made-up  " + homePath("far/away/Re cent.plans") + "\nMade-up  " +
                       homePath("far/away/Settings.plans") + "\nMade-up  " + homePath("In home.plans") +
                       "\nMade-up  " + homePath("Documents/In documents.plans") + "  (connected)\nMade-up  " +
                       homePath("far/away/Journal.plans") + "\n");
    ASSERT_EQ(run({"sources", "--json"}), 0) << err;
    const Json list = Json::parse(out);
    ASSERT_EQ(list.size(), 5U);
    EXPECT_EQ(list[3], (Json{{"program", "made-up"},
                             {"title", "Made-up"},
                             {"path", homePath("Documents/In documents.plans")},
                             {"connected", true}}));
}

TEST_F(CommandsTest, sourcesAreFoundInTheListOfGnuCash) {
    for (const char* name : {"far/Of a URL.plans", "far/Of a path.plans", "far/Anna's.plans"})
        writeHome(name, "[]");
    writeHome("bin/gsettings",
              "#!/bin/sh\n[ \"$*\" = 'list-recursively org.gnucash.GnuCash.history' ] || exit 1\n"
              "cat <<'END'\n"
              "org.gnucash.GnuCash.history file0 'file://" +
                  homePath("far/Of%20a%20URL.plans") +
                  "'\n"
                  "org.gnucash.GnuCash.history file1 '" +
                  homePath("far/Of a path.plans") +
                  "'\n"
                  "org.gnucash.GnuCash.history file2 \"" +
                  homePath("far/Anna's.plans") +
                  "\"\n"
                  "org.gnucash.GnuCash.history file3 ''\n"
                  "org.gnucash.GnuCash.history maxfiles 10\n"
                  "END\n");
    std::filesystem::permissions(homePath("bin/gsettings"), std::filesystem::perms::owner_all);
    const support::EnvironmentVariable path("PATH", homePath("bin") + ":" + std::getenv("PATH"));
    ASSERT_EQ(run({"sources"}), 0) << err;
    EXPECT_EQ(out, "Made-up  " + homePath("far/Of a URL.plans") + "\nMade-up  " +
                       homePath("far/Of a path.plans") + "\nMade-up  " + homePath("far/Anna's.plans") + "\n");
}

TEST_F(CommandsTest, sourcesMayBeNone) {
    ASSERT_EQ(run({"sources"}), 0) << err;
    EXPECT_EQ(out, "No file of Made-up was found.\n");
    ASSERT_EQ(run({"sources", "--json"}), 0) << err;
    EXPECT_EQ(out, "[]\n");
}

TEST_F(CommandsTest, connectTakesAFileOnceByItsTrueName) {
    writePlans(rentFile, {planOf("1", {"2026-03-12"})});
    std::filesystem::create_symlink(homePath(rentFile), homePath("Link.plans"));
    ASSERT_EQ(run({"connect", homePath("Link.plans")}), 0) << err;
    EXPECT_EQ(out, homePath(rentFile) + ": connected, a file of Made-up, plans: 1\n");
    ASSERT_EQ(run({"connect", homePath("./" + rentFile), "--json"}), 0) << err;
    const auto files = std::get<ConfigurationFile>(readConfiguration()).configuration.files;
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].path, homePath(rentFile));
    EXPECT_EQ(files[0].id.size(), 8U);
    EXPECT_EQ(
        Json::parse(out),
        (Json{{"id", files[0].id}, {"path", homePath(rentFile)}, {"program", "made-up"}, {"plans", 1}}));
    // The same file has the same name for ever.
    ASSERT_EQ(run({"disconnect", homePath(rentFile)}), 0) << err;
    EXPECT_TRUE(std::get<ConfigurationFile>(readConfiguration()).configuration.files.empty());
    ASSERT_EQ(run({"connect", homePath(rentFile)}), 0) << err;
    EXPECT_EQ(std::get<ConfigurationFile>(readConfiguration()).configuration.files, files);
}

TEST_F(CommandsTest, connectRefusesWhatItCannotRead) {
    writeHome("Notes.txt", "[]");
    writeHome("Damaged.plans", "[");
    for (const auto& [name, sentence] : {std::pair("Notes.txt", " is no readable file of Made-up"),
                                         std::pair("absent.plans", " is no readable file of Made-up"),
                                         std::pair("Damaged.plans", " is damaged")}) {
        EXPECT_EQ(run({"connect", homePath(name)}), 1);
        EXPECT_EQ(err, "korvel-today-bridge: " + homePath(name) + sentence + "\n");
    }
    EXPECT_FALSE(std::filesystem::exists(homePath(configurationName)));
    EXPECT_EQ(run({"disconnect", homePath("Notes.txt")}), 1);
    EXPECT_EQ(err, "korvel-today-bridge: " + homePath("Notes.txt") + " is not connected\n");
}

TEST_F(CommandsTest, pendingListsWhatIsPaidUntilItIsEntered) {
    connect(rentFile, {planOf("1", {"2026-03-09", "2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(run({"pending"}), 0) << err;
    EXPECT_EQ(out, "");
    const support::EnvironmentVariable locale("LC_ALL", "en_US.UTF-8");
    act(readRecords()[0], 1);
    act(readRecords()[1], 2, 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(run({"pending"}), 0) << err;
    EXPECT_EQ(out, "2026-03-09  Plan 1  −€870.00  paid 2026-03-10  " + homePath(rentFile) + "\n");
    clock.advance(3 * exchange::day);
    ASSERT_EQ(run({"pending"}), 0) << err;
    EXPECT_EQ(out,
              "2026-03-09  Plan 1  −€870.00  paid 2026-03-10, not yet entered  " + homePath(rentFile) + "\n");
    ASSERT_EQ(run({"pending", "--json"}), 0) << err;
    const Json list = Json::parse(out);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]["name"], "Plan 1");
    EXPECT_EQ(list[0]["due"], "2026-03-09");
    EXPECT_EQ(list[0]["reminder"], true);
    writePlans(rentFile, {planOf("1", {"2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(run({"pending"}), 0) << err;
    EXPECT_EQ(out, "");
}

TEST_F(CommandsTest, statusCountsWhatIsPending) {
    const std::string paid = "Paid and not yet entered, as pending lists them: 2\n";
    connect(rentFile, {planOf("1", {"2026-03-09", "2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    for (const auto& record : readRecords())
        act(record, 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(run({"status"}), 0) << err;
    EXPECT_TRUE(out.ends_with(paid)) << out;
    clock.advance(3 * exchange::day);
    ASSERT_EQ(run({"status"}), 0) << err;
    EXPECT_TRUE(out.ends_with(paid + "Paid days ago and still not entered: 2\n")) << out;
}

TEST_F(CommandsTest, undoTakesBackTheLastActionThatIsNotEntered) {
    connect(rentFile,
            {planOf("1", {"2026-03-09"}), planOf("2", {"2026-03-11"}), planOf("3", {"2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    const auto records = readRecords();
    act(records[0], 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    act(records[1], 3);
    act(records[2], 2, 7);
    // The log is taken before.
    ASSERT_EQ(run({"undo"}), 0) << err;
    EXPECT_EQ(out, "taken back: later 7  2026-03-12  Plan 3\n");
    EXPECT_EQ(shown(), (std::vector<std::string>{"3 2026-03-12"}));
    writePlans(rentFile, {planOf("1", {"2026-03-09"}), planOf("3", {"2026-03-12"})});
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(run({"undo", "--json"}), 0) << err;
    EXPECT_EQ(Json::parse(out)["action"], "paid");
    EXPECT_EQ(shown(), (std::vector<std::string>{"1 2026-03-09", "3 2026-03-12"}));
    EXPECT_EQ(run({"undo"}), 1);
    EXPECT_EQ(err, "korvel-today-bridge: there is nothing to take back\n");
    // What was taken back can be done again.
    act(readRecords()[0], 1);
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (std::vector<std::string>{"3 2026-03-12"}));
}

TEST_F(CommandsTest, statusTellsOfFilesAndOfWhatIsHidden) {
    ASSERT_EQ(run({"status"}), 0) << err;
    EXPECT_TRUE(out.starts_with("No file is connected.\n")) << out;
    connect(rentFile, {planOf("1", {"2026-03-29", "2026-03-31", "2026-04-02"})});
    clock.set(exchange::utc(2026, 3, 30, 12));
    std::filesystem::last_write_time(
        homePath(rentFile),
        std::filesystem::file_time_type(std::chrono::file_clock::from_sys(std::chrono::sys_seconds(
            std::chrono::seconds(static_cast<std::int64_t>(exchange::tenthOfMarch))))));
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(run({"status"}), 0) << err;
    EXPECT_EQ(out, "Made-up  " + homePath(rentFile) +
                       "\n    saved 2026-03-10 00:00\n    read 2026-03-30, plans: 1\n"
                       "Published occurrences: 3; the panel shows today what is due up to 2026-03-30\n"
                       "Due later, and hidden because the panel counts days within the month: 2\n"
                       "Paid and not yet entered, as pending lists them: 0\n");
    writeHome(rentFile, "[");
    writeHome(rentFile + ".LCK", "");
    EXPECT_EQ(run({"update"}), 1);
    ASSERT_EQ(run({"status"}), 0) << err;
    EXPECT_NE(out.find("\n    Made-up seems to have it open; what is not saved is not shown\n"), out.npos)
        << out;
    EXPECT_NE(out.find("\n    the file is damaged; what was read before stays shown\n"), out.npos) << out;
    std::filesystem::remove(homePath(rentFile));
    ASSERT_EQ(run({"status", "--json"}), 0) << err;
    const Json status = Json::parse(out);
    EXPECT_EQ(status["files"], (Json::array({{{"program", "made-up"},
                                              {"path", homePath(rentFile)},
                                              {"saved", nullptr},
                                              {"open", true},
                                              {"read", "2026-03-30"},
                                              {"plans", 1},
                                              {"includes", Json::array()},
                                              {"fault", "is damaged"}}})));
    EXPECT_EQ(status["shown_until"], "2026-03-30");
    EXPECT_EQ(status["published"], 3);
    EXPECT_EQ(status["hidden"], 2);
    EXPECT_EQ(status["container"], container);
    EXPECT_EQ(status["refusal"], "");
}

TEST_F(CommandsTest, statusTellsThatTheLastDayOfAMonthHidesAll) {
    connect(rentFile, {planOf("1", {"2026-03-29", "2026-03-31", "2026-04-02"})});
    clock.set(exchange::utc(2026, 3, 31, 12));
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(*settings().find("notification_days_count"), plist::Value(std::int64_t(-1)));
    ASSERT_EQ(run({"status", "--json"}), 0) << err;
    EXPECT_EQ(Json::parse(out)["shown_until"], "2026-03-30");
    EXPECT_EQ(Json::parse(out)["hidden"], 2);
}

TEST_F(CommandsTest, faultsOfSettingsAndDatabaseAreTold) {
    writeHome(configurationName, "[]");
    for (const char* command : {"update", "status", "pending", "undo", "sources"}) {
        EXPECT_EQ(run({command}), 1);
        EXPECT_EQ(err, "korvel-today-bridge: " + homePath(configurationName) + ": it is no JSON object\n")
            << command;
    }
    writeHome(configurationName, "{}");
    writeHome(databaseName, "no database at all, for certain");
    for (const char* command : {"update", "status", "pending", "undo"}) {
        EXPECT_EQ(run({command}), 1);
        EXPECT_EQ(err, "korvel-today-bridge: " + homePath(databaseName) + ": file is not a database\n")
            << command;
    }
}

TEST_F(CommandsTest, outputIsSafeOnATerminal) {
    Plan plan = planOf("1", {"2026-03-09"});
    plan.name = "\x1b[31mRed\u202e";
    connect(rentFile, {plan});
    ASSERT_EQ(run({"update"}), 0) << err;
    act(readRecords()[0], 1);
    ASSERT_EQ(run({"undo"}), 0) << err;
    EXPECT_EQ(out, "taken back: paid  2026-03-09  [31mRed \n");
}

} // namespace bridge

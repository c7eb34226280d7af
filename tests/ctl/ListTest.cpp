#include "ctl/CtlTest.h"
#include "model/GroupIdentifiers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

class ListTest : public CtlTest {};

TEST_F(ListTest, alignsATableByWhatIsSeen) {
    plist::Dictionary rent = recordOf("p", utc(2026, 3, 10, 18));
    plist::Dictionary tram = recordOf("q", utc(2026, 3, 9, 8, 30));
    tram.set("name", plist::Value("電車\n1"));
    tram.set("amount", plist::Value("¥ 1,040.50"));
    writeFeed({plist::Value(rent), plist::Value(tram)});
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_EQ(out, "2026-03-09 08:30  !  q  ¥ 1,040.50  電車 1\n"
                   "2026-03-10 18:00     p       $ 900  Rent\n"
                   "2 of 2 shown\n");
    EXPECT_EQ(err, "");
}

TEST_F(ListTest, givesEveryFieldAsJson) {
    plist::Dictionary record = recordOf("plan \"1\"", tenthOfMarch + 0.1);
    record.set("single", plist::Value(true));
    writeFeed({plist::Value(recordOf("q", utc(2026, 3, 10, 15))), plist::Value(record)});
    EXPECT_EQ(run({"list", "--json"}), 0);
    EXPECT_EQ(out,
              "{\"shownCount\": 2, \"overdue\": 1, \"dueToday\": 1, \"due\": 1, \"transactions\": [\n"
              "  {\"date\": 1773100800.1, \"name\": \"Rent\", \"image\": \"house\", \"amount\": \"$ 900\", "
              "\"income\": false, \"expense\": true, \"planpk\": \"plan \\\"1\\\"\", \"single\": true},\n"
              "  {\"date\": 1773154800, \"name\": \"Rent\", \"image\": \"house\", \"amount\": \"$ 900\", "
              "\"income\": false, \"expense\": true, \"planpk\": \"q\", \"single\": false}\n"
              "]}\n");
}

TEST_F(ListTest, givesWhatActTakes) {
    writeFeed({plist::Value(recordOf("half", utc(2026, 3, 10, 9) + 0.5)),
               plist::Value(recordOf("second", utc(2026, 3, 10, 9, 0, 1)))});
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_EQ(out, "1773133200.5         !  half    $ 900  Rent\n"
                   "2026-03-10 09:00:01  !  second  $ 900  Rent\n"
                   "2 of 2 shown\n");
    EXPECT_EQ(run({"act", "half", "1773133200.5", "paid"}), 0) << err;
    EXPECT_EQ(run({"act", "second", "2026-03-10 09:00:01", "paid"}), 0) << err;
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_EQ(out, "0 of 0 shown\n");
}

TEST_F(ListTest, givesWhatPublishTakes) {
    plist::Dictionary record = recordOf("plan \"1\"", tenthOfMarch + 0.1);
    record.set("single", plist::Value(true));
    writeFeed({plist::Value(record), plist::Value(recordOf("q", utc(2026, 3, 10, 15)))});
    EXPECT_EQ(run({"list", "--json"}), 0);
    const std::string listed = out;
    removeContainer();
    EXPECT_EQ(run({"publish", "-"}, nlohmann::json::parse(listed).at("transactions").dump()), 0) << err;
    EXPECT_EQ(run({"list", "--json"}), 0);
    EXPECT_EQ(out, listed);
}

TEST_F(ListTest, writesADateThatIsNoMomentAsText) {
    writeFeed({plist::Value(recordOf("p", std::numeric_limits<double>::quiet_NaN()))});
    EXPECT_EQ(run({"list", "--json"}), 0);
    EXPECT_NE(out.find("\"date\": \"nan\""), std::string::npos) << out;
}

TEST_F(ListTest, listsAllWhateverTheShownCountIs) {
    writeFeed(std::vector<plist::Value>(8, plist::Value(recordOf("p", tenthOfMarch))));
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_TRUE(out.ends_with("\n5 of 8 shown\n")) << out;
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 9);
    setSettings({{"show_transactions_count", plist::Value(std::int64_t(-1))}});
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_TRUE(out.ends_with("\n0 of 8 shown\n")) << out;
}

TEST_F(ListTest, isEmptyWhereTheWidgetsListIs) {
    EXPECT_EQ(run({"list"}), 0) << "no feed";
    EXPECT_EQ(out, "0 of 0 shown\n");
    removeContainer();
    EXPECT_EQ(run({"list", "--json"}), 0) << "no container";
    EXPECT_EQ(out,
              "{\"shownCount\": 0, \"overdue\": 0, \"dueToday\": 0, \"due\": 0, \"transactions\": []}\n");
}

TEST_F(ListTest, saysThatAFileCannotBeReadWhichTheWidgetTakesForAnAbsentOne) {
    for (const std::string& file :
         {std::string("notifications.xml"),
          "Library/Preferences/" + std::string(fullEditionGroupIdentifier) + ".plist"}) {
        makeFolder(file);
        EXPECT_EQ(run({"list"}), 1);
        EXPECT_EQ(out, "");
        EXPECT_EQ(err, "korvel-todayctl: " + path(file) + ": Is a directory\n");
        remove(file);
    }
}

TEST_F(ListTest, saysThatAFeedIsNoListWhichTheWidgetTakesForNone) {
    for (const char* text : {"<plist><dict/></plist>", "<plist><array>", "text", ""}) {
        write("notifications.xml", text);
        EXPECT_EQ(run({"list"}), 1) << text;
        EXPECT_EQ(out, "");
        EXPECT_EQ(err,
                  "korvel-todayctl: " + path("notifications.xml") + ": no array of records can be read\n");
    }
    writeFeed({});
    EXPECT_EQ(run({"list"}), 0) << "an array without a record";
}

TEST_F(ListTest, namesTheRecordAndKeyOverWhichTheWidgetWouldEnd) {
    writeFeed({plist::Value(recordOf("p", 0)), without(recordOf("p", 0), "amount")});
    EXPECT_EQ(run({"list"}), 1);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "korvel-todayctl: " + path("notifications.xml") + ": record 2: \"amount\" is missing\n");
}

TEST_F(ListTest, namesASettingOverWhichTheWidgetWouldEnd) {
    setSettings({{"notification_days_count", plist::Value(std::numeric_limits<std::int64_t>::max())}});
    EXPECT_EQ(run({"list"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path("notifications.xml") +
                       ": the setting \"notification_days_count\" is too large\n");
}

} // namespace
} // namespace ctl

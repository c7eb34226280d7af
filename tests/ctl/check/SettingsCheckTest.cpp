#include "ctl/check/BinaryList.h"
#include "ctl/check/CheckTest.h"
#include "exchange/TodayWidgetLogic.h"

#include <gmock/gmock.h>

#include <csignal>
#include <limits>

namespace ctl {
namespace {

namespace plist = platform::plist;

using plist::Value;
using testing::ElementsAre;

class SettingsCheckTest : public CheckTest {
protected:
    // A finding about a key of the settings.
    [[nodiscard]] static std::string of(const std::string& finding, const std::string& key = "-") {
        return finding + " " + settingsFile() + " - " + key;
    }
    void writeBinary(BinaryList& list, BinaryList::Object key, BinaryList::Object value) const {
        write(settingsFile(), list.bytes(list.dictionary({{key, value}})));
    }
};

TEST_F(SettingsCheckTest, acceptsSettingsOfTheirKinds) {
    setSettings({{"show_transactions_count", Value(std::int64_t(5))},
                 {"notification_days_count", Value(std::int64_t(7))},
                 {"account_pk", Value("-")},
                 {"unknown", Value(plist::Array{})}});
    EXPECT_THAT(checked(), ElementsAre("0"));
}

TEST_F(SettingsCheckTest, namesSettingsThatAreNoList) {
    write(settingsFile(), "<plist>");
    EXPECT_THAT(checked(), ElementsAre("1", of("loses settingsNoList")));
    EXPECT_TRUE(TodayWidgetLogic::getTransactionsCountToShow().isNone());
}

TEST_F(SettingsCheckTest, namesSettingsThatAreNoDictionary) {
    breakSettings();
    EXPECT_THAT(checked(), ElementsAre("1", of("loses settingsNoDictionary")));
    EXPECT_TRUE(TodayWidgetLogic::getTransactionsCountToShow().isNone());
}

TEST_F(SettingsCheckTest, namesSettingsThatAreAFolder) {
    makeFolder(settingsFile());
    EXPECT_THAT(checked(),
                ElementsAre("1", of("loses settingsNotReplaceable"), of("loses settingsUnreadable")));
}

TEST_F(SettingsCheckTest, namesSettingsThatItMayNotRead) {
    setSettings({});
    setMode(settingsFile(), 0);
    EXPECT_THAT(checkedByAUser(), ElementsAre("1", of("loses settingsUnreadable")));
}

TEST_F(SettingsCheckTest, namesAFolderInWhichNoSettingsCanBeMade) {
    makeFolder("Library/Preferences");
    setMode("Library/Preferences", 0555);
    EXPECT_THAT(checkedByAUser(), ElementsAre("1", of("loses settingsNotReplaceable")));
}

TEST_F(SettingsCheckTest, namesAFileInPlaceOfTheFolder) {
    write("Library", "");
    EXPECT_THAT(checked(),
                ElementsAre("1", of("loses settingsNotReplaceable"), of("loses settingsUnreadable")));
}

TEST_F(SettingsCheckTest, namesSettingsThatExpandTooFar) {
    BinaryList list;
    const auto key = list.string("extra");
    writeBinary(list, key, list.bomb());
    EXPECT_THAT(checked(), ElementsAre("1", of("loses settingsExpand")));
}

TEST_F(SettingsCheckTest, namesSettingsWithoutAnXmlForm) {
    BinaryList list;
    const auto key = list.string("extra");
    writeBinary(list, key, list.null());
    EXPECT_THAT(checked(), ElementsAre("1", of("loses settingsNoXmlForm", "extra")));
}

TEST_F(SettingsCheckTest, namesTextsThatOtherReadersRefuse) {
    setSettings({{"extra", Value("a\x01")}});
    EXPECT_THAT(checked(), ElementsAre("0", of("degrades notPortable", "extra")));
}

TEST_F(SettingsCheckTest, namesCountsOfAnotherKind) {
    setSettings({{"show_transactions_count", Value("5")}, {"notification_days_count", Value(3.7)}});
    EXPECT_THAT(checked(), ElementsAre("0", of("degrades settingOfOtherKind", "show_transactions_count"),
                                       of("degrades settingOfOtherKind", "notification_days_count")));
}

TEST_F(SettingsCheckTest, namesAnAccountKeyThatIsANumber) {
    setSettings({{"account_pk", Value(std::int64_t(12))}});
    write("12/icons/house.png", pngBytes(2, 2));
    EXPECT_THAT(checked(), ElementsAre("0", of("degrades settingOfOtherKind", "account_pk")));
}

TEST_F(SettingsCheckTest, namesAnAccountKeyThatIsNoText) {
    setSettings({{"account_pk", Value(plist::Array{})}});
    EXPECT_THAT(checked(), ElementsAre("1", of("loses accountKeyUnusable", "account_pk")));
}

TEST_F(SettingsCheckTest, namesAnAccountKeyWithANul) {
    BinaryList list;
    const auto key = list.string("account_pk");
    writeBinary(list, key, list.string(std::string_view("a\0b", 3)));
    writeFeed({});
    EXPECT_THAT(checked(), ElementsAre("1", of("loses accountKeyUnusable", "account_pk"),
                                       of("degrades notPortable", "account_pk")));
}

TEST_F(SettingsCheckTest, namesAnAccountKeyThatLeadsOut) {
    writeFeed({});
    for (const char* key : {"..", "../other", "a/../../b"}) {
        setAccountKey(key);
        EXPECT_THAT(findings(), testing::Contains(of("loses accountKeyLeadsOut", "account_pk"))) << key;
    }
}

TEST_F(SettingsCheckTest, namesAnAccountKeyThatIsNoName) {
    writeFeed({});
    for (const char* key : {"", ".", "/", "a/b", "a/..", "/a"}) {
        setAccountKey(key);
        EXPECT_THAT(findings(), testing::Contains(of("degrades accountKeyNoName", "account_pk"))) << key;
    }
}

TEST_F(SettingsCheckTest, acceptsAnAccountKeyThatOnlyLooksLikeAWay) {
    writeFeed({});
    for (const char* key : {"..a", "a..", "...", "-"}) {
        setAccountKey(key);
        EXPECT_THAT(findings(), ElementsAre()) << key;
    }
}

TEST_F(SettingsCheckTest, namesAnAccountKeyThatIsTooLongForAFolder) {
    writeFeed({});
    setAccountKey(std::string(300, 'a'));
    EXPECT_THAT(findings(), testing::Contains(testing::StartsWith("loses logNotReplaceable ")));
}

TEST_F(SettingsCheckTest, notesAHiddenList) {
    setSettings({{"show_transactions_count", Value(std::int64_t(-1))}});
    EXPECT_THAT(checked(), ElementsAre("0", of("note listHidden", "show_transactions_count")));
}

TEST_F(SettingsCheckTest, agreesAboutADayCountThatOverflows) {
    setSettings({{"notification_days_count", Value(std::numeric_limits<std::int64_t>::max())}});
    EXPECT_THAT(checked(), ElementsAre("1", of("ends dayCountOverflow", "notification_days_count")));
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(SettingsCheckTest, agreesAboutACalendarWithoutADate) {
    clock.set(std::numeric_limits<double>::infinity());
    EXPECT_THAT(checked(), ElementsAre("1", "ends calendarNoDate - - -"));
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

// The largest count that is not cut, by the day of the month.
TEST_F(SettingsCheckTest, namesADayCountThatTheMonthCuts) {
    const std::string cut = of("degrades dayCountCut", "notification_days_count");
    writeFeed({});
    const auto findingsOn = [&](unsigned dayOfMonth, std::int64_t count) {
        clock.set(exchange::utc(2026, 3, dayOfMonth, 15));
        setSettings({{"notification_days_count", Value(count)}});
        return findings();
    };
    EXPECT_THAT(findingsOn(10, 20), ElementsAre());    // adds 21 days: 31 March
    EXPECT_THAT(findingsOn(10, 21), ElementsAre(cut)); // 1 March
    EXPECT_NE(out.find("20 is the largest count that is not cut today"), std::string::npos) << out;
    EXPECT_NE(out.find("the list reaches to 2026-02-28 23:59"), std::string::npos) << out;
    EXPECT_THAT(findingsOn(10, 40), ElementsAre(cut));
    EXPECT_THAT(findingsOn(30, 0), ElementsAre());
    EXPECT_THAT(findingsOn(31, 0), ElementsAre(cut));
    EXPECT_NE(out.find("no count from 0 up is not cut today"), std::string::npos) << out;
    EXPECT_THAT(findingsOn(31, -1), ElementsAre());
    EXPECT_THAT(findingsOn(3, -3), ElementsAre());    // 1 March
    EXPECT_THAT(findingsOn(3, -4), ElementsAre(cut)); // 31 March
}

} // namespace
} // namespace ctl

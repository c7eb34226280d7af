#include "ctl/Bomb.h"
#include "ctl/CtlTest.h"
#include "model/GroupIdentifiers.h"

#include <filesystem>

namespace ctl {
namespace {

namespace plist = platform::plist;

class SettingsTest : public CtlTest {};

TEST_F(SettingsTest, setsTheKnownKeysInTheirTypes) {
    for (const char* key : {"show_transactions_count", "notification_days_count"}) {
        EXPECT_EQ(run({"settings", "set", key, "-3"}), 0) << err;
        EXPECT_EQ(*settings().find(key), plist::Value(std::int64_t(-3)));
    }
    EXPECT_EQ(run({"settings", "set", "edit_transaction_date", "1773165600.5"}), 0);
    EXPECT_EQ(*settings().find("edit_transaction_date"), plist::Value(1773165600.5));
    for (const char* key : {"account_pk", "url_string", "edit_transaction_plan_pk", "anything"}) {
        EXPECT_EQ(run({"settings", "set", key, "7"}), 0);
        EXPECT_EQ(*settings().find(key), plist::Value("7"));
    }
}

TEST_F(SettingsTest, keepsTheOtherKeys) {
    setSettings({{"ratio", plist::Value(0.1)}});
    EXPECT_EQ(run({"settings", "set", "account_pk", ""}), 0);
    EXPECT_EQ(*settings().find("ratio"), plist::Value(0.1));
    EXPECT_EQ(*settings().find("account_pk"), plist::Value(""));
}

TEST_F(SettingsTest, refusesWhatOtherReadersOfXmlWouldNotReadAsItIs) {
    setSettings({{"kept", plist::Value("a")}});
    EXPECT_EQ(run({"settings", "set", "account_pk", "a\x01"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + container + ": \"account_pk\" holds U+0001, which XML forbids\n");
    EXPECT_EQ(run({"settings", "set", "a\uFFFF", "1"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + container +
                       ": \"a\uFFFF\" is a key that holds U+FFFF, which XML forbids\n");
    EXPECT_EQ(settings().size(), 1u);
}

TEST_F(SettingsTest, refusesToWriteAnotherSettingAgainThatOtherReadersWouldNotReadAsItIs) {
    for (const auto& [value, what] :
         {std::pair(plist::Value("a\r"), "holds a carriage return, which XML turns into a line feed"),
          std::pair(plist::Value(plist::Date{1e12}), "is a date outside the years 1 to 9999")}) {
        setSettings({{"of the host", value}});
        const plist::Dictionary before = settings();
        EXPECT_EQ(run({"settings", "set", "account_pk", "a"}), 1);
        EXPECT_EQ(err, "korvel-todayctl: " + container + ": \"of the host\" " + what + "\n");
        EXPECT_EQ(settings(), before);
    }
}

TEST_F(SettingsTest, getsWhatIsSet) {
    setSettings({{"text", plist::Value("a \"b\"")},
                 {"number", plist::Value(std::int64_t(12))},
                 {"truth", plist::Value(true)},
                 {"list", plist::Value(plist::Array{plist::Value(1.5)})}});
    EXPECT_EQ(run({"settings", "get", "text"}), 0);
    EXPECT_EQ(out, "a \"b\"\n");
    EXPECT_EQ(run({"settings", "get", "text", "--json"}), 0);
    EXPECT_EQ(out, "\"a \\\"b\\\"\"\n");
    EXPECT_EQ(run({"settings", "get", "number"}), 0);
    EXPECT_EQ(out, "12\n");
    EXPECT_EQ(run({"settings", "get", "truth", "--json"}), 0);
    EXPECT_EQ(out, "true\n");
    EXPECT_EQ(run({"settings", "get", "list"}), 0);
    EXPECT_EQ(out, "[1.5]\n");
}

TEST_F(SettingsTest, printsATextAsItIsButForWhatATerminalObeys) {
    setSettings({{"text", plist::Value("one\ntwo\t\x1b[31m\u202E\\")}});
    EXPECT_EQ(run({"settings", "get", "text"}), 0);
    EXPECT_EQ(out, "one\ntwo\t\\u001b[31m\\u202e\\\n");
}

TEST_F(SettingsTest, doesNotPrintWhatWouldFillTheDisk) {
    write("Library/Preferences/" + std::string(fullEditionGroupIdentifier) + ".plist", bombOfKey("bomb"));
    for (const char* option : {"--", "--json"}) {
        EXPECT_EQ(run({"settings", "get", "bomb", option}), 1);
        EXPECT_EQ(out, "");
        EXPECT_EQ(err,
                  "korvel-todayctl: " + container + ": the setting bomb is too large when written out\n");
    }
}

TEST_F(SettingsTest, saysThatAKeyIsAbsent) {
    EXPECT_EQ(run({"settings", "get", "none"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + container + ": there is no setting none\n");
}

TEST_F(SettingsTest, saysThatTheFileCannotBeRead) {
    const std::string file = "Library/Preferences/" + std::string(fullEditionGroupIdentifier) + ".plist";
    makeFolder(file);
    EXPECT_EQ(run({"settings", "get", "account_pk"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path(file) + ": Is a directory\n");
}

TEST_F(SettingsTest, doesNotOverwriteWhatIsNoDictionary) {
    breakSettings();
    EXPECT_EQ(run({"settings", "set", "account_pk", "a"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + container + ": the shared settings are no dictionary\n");
}

TEST_F(SettingsTest, makesNoContainer) {
    removeContainer();
    EXPECT_EQ(run({"settings", "set", "account_pk", "a"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + container + ": there is no container\n");
    EXPECT_FALSE(std::filesystem::exists(container));
}

} // namespace
} // namespace ctl

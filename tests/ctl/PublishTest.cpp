#include "ctl/CtlTest.h"
#include "platform/plist/Reader.h"
#include "support/RegionOverride.h"

#include <filesystem>
#include <fstream>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

const std::string rest = R"("name": "Rent", "image": "house", "amount": "$ 900", "income": false, )"
                         R"("expense": true, "planpk": "p", "single": false)";

std::string objectDated(const std::string& date) {
    return "{\"date\": " + date + ", " + rest + "}";
}

class PublishTest : public CtlTest {
protected:
    void expectRefused(const std::string& json, const std::string& sentence) {
        write("notifications.xml", "the feed before");
        EXPECT_EQ(run({"publish", "-"}, json), 1) << json;
        EXPECT_EQ(err, "korvel-todayctl: standard input" + sentence + "\n");
        EXPECT_EQ(feed(), "the feed before");
    }
};

TEST_F(PublishTest, writesTheFeedWithKindsAndDigitsKept) {
    const std::string json =
        "[{\"date\": 1773165600.125, \"further\": [18446744073709551615, 1.0, {\"a\": true}], " + rest + "}]";
    EXPECT_EQ(run({"publish", "-"}, json), 0) << err;
    EXPECT_EQ(feed(),
              arrayFile("\t<dict>\n"
                        "\t\t<key>amount</key>\n\t\t<string>$ 900</string>\n"
                        "\t\t<key>date</key>\n\t\t<real>1773165600.125</real>\n"
                        "\t\t<key>expense</key>\n\t\t<true/>\n"
                        "\t\t<key>further</key>\n\t\t<array>\n"
                        "\t\t\t<integer>18446744073709551615</integer>\n\t\t\t<real>1</real>\n"
                        "\t\t\t<dict>\n\t\t\t\t<key>a</key>\n\t\t\t\t<true/>\n\t\t\t</dict>\n\t\t</array>\n"
                        "\t\t<key>image</key>\n\t\t<string>house</string>\n"
                        "\t\t<key>income</key>\n\t\t<false/>\n"
                        "\t\t<key>name</key>\n\t\t<string>Rent</string>\n"
                        "\t\t<key>planpk</key>\n\t\t<string>p</string>\n"
                        "\t\t<key>single</key>\n\t\t<false/>\n"
                        "\t</dict>\n"));
}

TEST_F(PublishTest, takesDatesAsTextsInTheLocalTimeZone) {
    region.reset();
    const support::RegionOverride here(platform::Region{"de_DE", "Europe/Berlin"});
    EXPECT_EQ(run({"publish", "-"}, "[" + objectDated("\"today+3 18:00\"") + "]"), 0) << err;
    EXPECT_NE(feed().find("<real>1773421200</real>"), std::string::npos) << feed(); // 2026-03-13 17:00 UTC
}

TEST_F(PublishTest, keepsAWholeNumberAnInteger) {
    EXPECT_EQ(run({"publish", "-"}, "[" + objectDated("1773165600") + "]"), 0);
    EXPECT_NE(feed().find("<integer>1773165600</integer>"), std::string::npos) << feed();
}

TEST_F(PublishTest, takesEveryCharacterThatXmlHas) {
    const std::string note = R"("note": "\t\n\u007f\u0085\u202e\ufeff\ufffd\ud83c\udfe0")";
    EXPECT_EQ(run({"publish", "-"}, "[{\"date\": 1, " + note + ", " + rest + "}]"), 0) << err;
    const std::string bytes = feed();
    const auto value = plist::read(bytes);
    const plist::Dictionary& record = *std::get<plist::Value>(value).array()->front().dictionary();
    EXPECT_EQ(*record.find("note"), plist::Value("\t\n\x7F\u0085\u202E\uFEFF\uFFFD\U0001F3E0"));
}

TEST_F(PublishTest, refusesWhatOtherReadersOfXmlWouldNotReadAsItIs) {
    const auto recordWith = [](const std::string& entry) {
        return "[{\"date\": 1, " + entry + ", " + rest + "}]";
    };
    expectRefused(recordWith(R"("note": "a\u0000")"), ": record 1: \"note\" holds U+0000, which XML forbids");
    expectRefused(
        recordWith(R"("note": ["\r"])"),
        ": record 1: \"note\", element 1 holds a carriage return, which XML turns into a line feed");
    expectRefused(recordWith(R"("note": {"a": "\uffff"})"),
                  ": record 1: \"note\", \"a\" holds U+FFFF, which XML forbids");
    expectRefused(recordWith(R"("\ufffe": 1)"),
                  ": record 1: \"\uFFFE\" is a key that holds U+FFFE, which XML forbids");
}

TEST_F(PublishTest, refusesDatesOutsideTheYears1To9999) {
    for (const char* date :
         {"-62135596801", "253402300800", "1e300", "\"inf\"", "\"-inf\"", "18446744073709551615"})
        expectRefused("[" + objectDated("1") + ", " + objectDated(date) + "]",
                      ": record 2: \"date\" is outside the years 1 to 9999");
    expectRefused("[" + objectDated("\"nan\"") + "]", ": record 1: \"date\" is no date: nan");
    for (const char* date : {"-62135596800", "253402300799.5"})
        EXPECT_EQ(run({"publish", "-"}, "[" + objectDated(date) + "]"), 0) << err;
}

TEST_F(PublishTest, takesContainersNestedAsDeeplyAsJsonAllows) {
    const std::string note = "\"note\": " + std::string(499, '[') + std::string(499, ']');
    EXPECT_EQ(run({"publish", "-"}, "[{\"date\": 1, " + note + ", " + rest + "}]"), 0) << err;
    EXPECT_TRUE(std::holds_alternative<plist::Value>(plist::read(feed())));
}

TEST_F(PublishTest, makesTheContainerAndReadsAFile) {
    removeContainer();
    const std::string file = scratch + "/feed.json";
    std::ofstream(file) << "[]";
    EXPECT_EQ(run({"publish", file}), 0) << err;
    EXPECT_EQ(feed(), arrayFile(""));
}

TEST_F(PublishTest, isReadByList) {
    EXPECT_EQ(run({"publish", "-"}, "[" + objectDated("\"today\"") + "," + objectDated("\"today-1\"") + "]"),
              0);
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_EQ(out,
              "2026-03-09 00:00  !  p  $ 900  Rent\n2026-03-10 00:00  !  p  $ 900  Rent\n2 of 2 shown\n");
}

TEST_F(PublishTest, refusesWhatTheWidgetWouldEndOver) {
    expectRefused("[{}]", ": record 1: \"date\" is missing");
    expectRefused("[" + objectDated("1") + ", 5]", ": record 2 is not a dictionary");
    expectRefused("[{\"date\": 4e9}]", ": record 1: \"name\" is missing");
    expectRefused("[{\"date\": true, \"name\": 1}]", ": record 1: \"name\" is not a string");
    expectRefused("[" + objectDated("[]") + "]", ": record 1: \"date\" is not a number");
}

TEST_F(PublishTest, refusesWhatIsNoDate) {
    expectRefused("[" + objectDated("\"tomorrow\"") + "]", ": record 1: \"date\" is no date: tomorrow");
}

TEST_F(PublishTest, refusesWhatAFeedCannotHold) {
    expectRefused("[{\"date\": 1, \"note\": [null], " + rest + "}]",
                  ": record 1: \"note\" holds a null, which a property list cannot");
    expectRefused("[" + objectDated("1") + ", null]", ": record 2 is not a dictionary");
    expectRefused("{}", ": it is no array");
}

TEST_F(PublishTest, namesThePlaceOfAFaultInTheJson) {
    expectRefused(
        "[\n  {\"date\" 1}]",
        ":2:11: syntax error while parsing object separator - unexpected number literal; expected ':'");
}

TEST_F(PublishTest, saysThatAFileCannotBeRead) {
    EXPECT_EQ(run({"publish", scratch + "/none.json"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + scratch + "/none.json: No such file or directory\n");
}

TEST_F(PublishTest, saysThatTheContainerCannotBeMade) {
    removeContainer();
    std::ofstream(container) << "a file";
    EXPECT_EQ(run({"publish", "-"}, "[]"), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + container + ": Not a directory\n");
}

} // namespace
} // namespace ctl

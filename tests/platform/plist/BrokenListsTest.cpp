#include "platform/plist/Reader.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace platform::plist;

namespace {

struct Broken {
    const char* name;
    std::string_view text;
    std::size_t line;
    const char* message;
};

} // namespace

class BrokenList : public testing::TestWithParam<Broken> {};

TEST_P(BrokenList, isRefusedWithItsPlaceAndASentence) {
    const ReadResult result = read(GetParam().text);
    const Error* const error = std::get_if<Error>(&result);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->message, GetParam().message);
    EXPECT_EQ(error->line, GetParam().line);
    EXPECT_LE(error->offset, GetParam().text.size());
}

INSTANTIATE_TEST_SUITE_P(
    Lists, BrokenList,
    testing::Values(
        Broken{"empty", "", 1, "The list is empty"},
        Broken{"unknown tag", "<plist>\n<null/></plist>", 2, "A tag is unknown"},
        Broken{"tag in capitals", "<plist><String>a</String></plist>", 1, "A tag is unknown"},
        Broken{"text between tags", "<plist><array>a</array></plist>", 1,
               "Text stands where a tag is expected"},
        Broken{"wrong close tag", "<array>\n\n</dict> and more", 3,
               "An element is not closed by its own tag"},
        Broken{"two values", "<plist><true/><true/></plist>", 1, "A plist holds more than one value"},
        Broken{"empty plist", "<plist></plist>", 1, "A plist is empty"},
        Broken{"empty plist tag", "<plist/>", 1, "An element is empty"},
        Broken{"value for key", "<dict><string>a</string></dict>", 1,
               "A dictionary holds a value where a key is expected"},
        Broken{"key without value", "<dict><key>a</key></dict>", 1, "A key has no value"},
        Broken{"empty integer", "<integer></integer>", 1, "An integer is empty"},
        Broken{"integer out of range", "<integer>18446744073709551616</integer>", 1,
               "An integer is out of range"},
        Broken{"real with comma", "<real>1,5</real>", 1, "A real is not a number"},
        Broken{"bad date", "<date>2024-01-01</date>", 1, "A date is not of the form YYYY-MM-DDThh:mm:ssZ"},
        Broken{"data not ascii", "<data>\xC3\xA9</data>", 1, "A data element is not base 64"},
        Broken{"filled true", "<true>1</true>", 1, "An element is not closed by its own tag"},
        Broken{"unknown entity", "<string>&nbsp;</string>", 1, "An entity is unknown"},
        Broken{"surrogate reference", "<string>&#xD800;</string>", 1,
               "A character reference names no character"},
        Broken{"invalid utf8", "<string>\n\x80</string>", 1, "A text is not valid UTF-8"},
        Broken{"internal subset", "<!DOCTYPE plist [<!ENTITY a 'b'>]><true/>", 1,
               "The DOCTYPE has an internal subset, which is not allowed"},
        Broken{"open comment", "<!-- <true/>", 1, "A comment is not closed"},
        Broken{"open section", "<string><![CDATA[a</string>", 1, "A CDATA section is not closed"},
        Broken{"unknown encoding", "<?xml encoding=\"ebcdic\"?><true/>", 1,
               "The XML declaration names an unknown encoding"},
        Broken{"two words", "hello\nworld", 2, "Neither '=' nor ';' follows a key"},
        Broken{"open dictionary", "{a = b;", 1, "A dictionary is not closed"},
        Broken{"no semicolon", "{\na = b\n}", 3, "No ';' follows a value"},
        Broken{"open array", "(a,\nb", 2, "The text ends inside an array"},
        Broken{"junk after array", "(a) b", 1, "More follows the list"},
        Broken{"open quote", "(\"a", 1, "An array is not closed"},
        Broken{"bad character", "@", 1, "No value begins with this character"},
        Broken{"old form not utf8", "(\"\x80\")", 1, "The text is not valid UTF-8"},
        Broken{"no trailer", "bplist00 and a text", 0, "The trailer does not fit the list"}),
    [](const auto& test) {
        std::string name = test.param.name;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

namespace {

const std::string xmlList =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist>\n<!-- x -->\n<plist version=\"1.0\">"
    "<dict><key>a&amp;</key><array><integer>-12</integer><real>1.5</real><true/><false></false>"
    "<date>2024-01-01T00:00:00Z</date><data>AAEC</data><string>x<![CDATA[y]]>\xC3\xA9</string>"
    "<dict/></array></dict></plist>";

} // namespace

TEST(TruncatedList, isRefusedAtEveryByteInXml) {
    ASSERT_TRUE(std::holds_alternative<Value>(read(xmlList)));
    for (std::size_t size = 0; size < xmlList.size(); ++size)
        EXPECT_TRUE(std::holds_alternative<Error>(read(xmlList.substr(0, size)))) << size;
}

TEST(TruncatedList, isRefusedAtEveryByteInTheOldForm) {
    const std::string text = "{ a = ( \"x\\n\\U00e9\", <00ff>, 'y' ); b = { c = d; }; /* e */ }";
    ASSERT_TRUE(std::holds_alternative<Value>(read(text)));
    for (std::size_t size = 1; size < text.size(); ++size)
        EXPECT_TRUE(std::holds_alternative<Error>(read(text.substr(0, size)))) << size;
}

// A few bytes of the magic alone are texts of the old form.
TEST(TruncatedList, isRefusedAtEveryByteInTheBinaryForm) {
    const std::string bytes(
        "bplist00\xA3\x01\x02\x03Qa\x10\x05\x23\x3F\xF8\0\0\0\0\0\0\x08\x0C\x0E\x10\0\0\0\0\0\0\x01\x01"
        "\0\0\0\0\0\0\0\x04\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x19",
        25 + 4 + 32);
    ASSERT_TRUE(std::holds_alternative<Value>(read(bytes)));
    for (std::size_t size = 9; size < bytes.size(); ++size)
        EXPECT_TRUE(std::holds_alternative<Error>(read(bytes.substr(0, size)))) << size;
}

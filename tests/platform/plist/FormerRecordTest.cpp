#include "platform/plist/xml/FormerRecord.h"

#include "platform/plist/RandomList.h"
#include "platform/plist/RecordComparison.h"

#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

using namespace platform::plist;

namespace {

constexpr std::string_view usualRecord = "\t<dict>\n"
                                         "\t\t<key>amount</key>\n\t\t<string>1.00 €</string>\n"
                                         "\t\t<key>date</key>\n\t\t<real>12.5</real>\n"
                                         "\t\t<key>income</key>\n\t\t<true/>\n"
                                         "\t\t<key>name</key>\n\t\t<string>Rent</string>\n"
                                         "\t\t<key>revision</key>\n\t\t<integer>7</integer>\n"
                                         "\t</dict>\n";

std::string listOf(std::string_view records) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<array>\n" +
           std::string(records) + "</array>\n</plist>\n";
}

std::string replaced(std::string text, std::string_view part, std::string_view by) {
    const std::size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return text.replace(at, part.size(), by);
}

void expectSameAsTree(const std::string& xml) {
    const Visits visits = visitAsTree(xml, never);
    ASSERT_EQ(visitAsStream(xml, never), visits) << xml;
    ASSERT_EQ(visitAsStream(xml, 1), visitAsTree(xml, 1)) << xml;
    ASSERT_EQ(rewriteAsStream(xml).xml, rewriteAsTree(xml)) << xml;
    const Value added("added");
    const ReadResult result = read(xml);
    if (visits.outcome == RecordsOutcome::NoArray) {
        ASSERT_EQ(append(xml, added).outcome, RecordsOutcome::NoArray) << xml;
        return;
    }
    Array expected = *std::get<Value>(result).array();
    expected.push_back(added);
    ASSERT_EQ(append(xml, added).xml, writeXml(Value(expected))) << xml;
}

struct Deviation {
    std::string_view part;
    std::string_view by;
};

} // namespace

class FormerRecordDeviationTest : public testing::TestWithParam<Deviation> {};

// The deviating record stands after usual ones and before others, at the end, and first.
TEST_P(FormerRecordDeviationTest, readsAsTheTreeDoes) {
    const std::string usual(usualRecord);
    const std::string other = replaced(usual, GetParam().part, GetParam().by);
    expectSameAsTree(listOf(usual + usual + other + usual + usual));
    expectSameAsTree(listOf(usual + usual + other));
    expectSameAsTree(listOf(other + usual + usual));
    expectSameAsTree(listOf(other + other + usual + other));
}

TEST_P(FormerRecordDeviationTest, staysWithinAListThatEndsThere) {
    const std::string usual(usualRecord);
    const std::string list = listOf(usual + usual + replaced(usual, GetParam().part, GetParam().by));
    for (std::size_t size = list.size() - usual.size(); size < list.size(); ++size) {
        // A string of its own, so that reading beyond its end is seen where that is watched for.
        const std::string cut(list.data(), size);
        ASSERT_EQ(visitAsStream(cut, never), visitAsTree(cut, never)) << cut;
        ASSERT_EQ(rewriteAsStream(cut).xml, rewriteAsTree(cut)) << cut;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Contents, FormerRecordDeviationTest,
    testing::Values(Deviation{"Rent", "Tea &amp; biscuits"}, Deviation{"Rent", "a &quot;b&quot;"},
                    Deviation{"Rent", "a > b"}, Deviation{"Rent", "\xEF\xBB\xBFRent"}, Deviation{"Rent", ""},
                    Deviation{"Rent", "한국"}, Deviation{"Rent", "\xED\xA0\x80"}, Deviation{"Rent", "\xFF"},
                    Deviation{"Rent", "<![CDATA[a<b]]>"}, Deviation{"Rent", "a<!-- b -->"},
                    Deviation{"Rent", "&unknown;"}, Deviation{"12.5", "12.50"}, Deviation{"12.5", "-0.0"},
                    Deviation{"12.5", "1e3"}, Deviation{"12.5", "nan"}, Deviation{"12.5", "+5"},
                    Deviation{"12.5", " 12.5"}, Deviation{"12.5", "twelve"}, Deviation{"12.5", ""},
                    Deviation{">7<", ">007<"}, Deviation{">7<", ">0<"}, Deviation{">7<", ">-0<"},
                    Deviation{">7<", ">-7<"}, Deviation{">7<", ">- 7<"}, Deviation{">7<", ">+7<"},
                    Deviation{">7<", ">0x1F<"}, Deviation{">7<", "> 7<"}, Deviation{">7<", ">7 <"},
                    Deviation{">7<", ">18446744073709551615<"}, Deviation{">7<", ">18446744073709551616<"},
                    Deviation{">7<", "><"}));

INSTANTIATE_TEST_SUITE_P(
    Tags, FormerRecordDeviationTest,
    testing::Values(Deviation{"<true/>", "<false/>"}, Deviation{"<true/>", "<true></true>"},
                    Deviation{"<true/>", "<true />"}, Deviation{"<true/>", "<string>true</string>"},
                    Deviation{"<true/>", "<array/>"},
                    Deviation{"<true/>", "<date>2024-01-01T00:00:00Z</date>"},
                    Deviation{"<string>Rent</string>", "<string/>"},
                    Deviation{"<string>Rent</string>", "<key>Rent</key>"},
                    Deviation{"<string>Rent</string>", "<plist><string>Rent</string></plist>"},
                    Deviation{"<string>Rent</string>", "<string >Rent</string>"},
                    Deviation{"Rent</string>", "Rent</string >"}, Deviation{"Rent</string>", "Rent</strinG>"},
                    Deviation{"<real>12.5</real>", "<integer>12</integer>"},
                    Deviation{"12.5</real>", "12.5</integer>"}));

INSTANTIATE_TEST_SUITE_P(
    Keys, FormerRecordDeviationTest,
    testing::Values(
        Deviation{"<key>name</key>", "<key>name2</key>"}, Deviation{"<key>name</key>", "<key>planpk</key>"},
        Deviation{"<key>name</key>", "<key>date</key>"}, Deviation{"<key>name</key>", "<key>CF$UID</key>"},
        Deviation{"<key>name</key>", "<key>n&#97;me</key>"},
        Deviation{"\t\t<key>amount</key>\n\t\t<string>1.00 €</string>\n", ""},
        Deviation{"\t\t<key>revision</key>\n\t\t<integer>7</integer>\n", ""},
        Deviation{"\t</dict>", "\t\t<key>single</key>\n\t\t<true/>\n\t</dict>"},
        Deviation{"\t</dict>", "\t\t<key>single</key>\n\t</dict>"}, Deviation{"\t</dict>", "</dict>"},
        Deviation{"\t</dict>", "<!-- end --></dict>"}, Deviation{"\t</dict>", "\t</dicT>"},
        Deviation{"\n\t\t<key>name</key>\n\t\t", "<key>name</key>"}));

// Lists of like records in which here and there a byte is another.
TEST(FormerRecordTest, agreesWithTheTreeOnLikeRecords) {
    RandomList random(11);
    for (int i = 0; i < 20000; ++i) {
        std::string records;
        for (std::size_t count = 2 + random.below(5); count > 0; --count) {
            std::string record = replaced(std::string(usualRecord), "12.5",
                                          std::to_string(static_cast<double>(random.below(1000)) / 8 - 60));
            if (random.below(4) == 0)
                record = random.broken(record);
            records += record;
        }
        expectSameAsTree(listOf(records));
    }
}

TEST(FormerRecordTest, aRecordOfTheUidsKeyAloneIsNoPattern) {
    const std::string uid = "\t<dict>\n\t\t<key>CF$UID</key>\n\t\t<integer>7</integer>\n\t</dict>\n";
    const std::string text = replaced(uid, "<integer>7</integer>", "<string>7</string>");
    for (const std::string& records : {uid + uid + text + uid, text + text + uid + text})
        expectSameAsTree(listOf(records));
}

// Of the marks at a key's start each reading drops one.
TEST(FormerRecordTest, aKeyThatWouldBeReadAsAnotherOnceItIsWrittenIsNoPattern) {
    const std::string mark = "\xEF\xBB\xBF";
    const std::string record = "\t<dict>\n\t\t<key>name</key>\n\t\t<integer>7</integer>\n\t</dict>\n";
    for (const std::string key : {"name", "CF$UID"}) {
        const std::string plain = replaced(record, "name", key);
        const std::string once = replaced(record, "name", mark + key);
        const std::string twice = replaced(record, "name", mark + mark + key);
        for (const std::string& records :
             {twice + once + plain, twice + twice + once, once + once + plain + once})
            expectSameAsTree(listOf(records));
    }
}

TEST(FormerRecordTest, needsTheTagsAtTheirPlaces) {
    FormerRecord former;
    EXPECT_FALSE(former.isUsable());
    ASSERT_TRUE(former.begin());
    former.note(3, XmlTag::String, 20, 32);
    former.note(4, XmlTag::False, 52, 52);
    former.finish("<key>name</key><string>abc</string><key>b</key><false/></dict>");
    EXPECT_FALSE(former.isUsable()) << "the places are not those of the tags";
}

TEST(FormerRecordTest, takesARecordApart) {
    FormerRecord former;
    ASSERT_TRUE(former.begin());
    former.note(3, XmlTag::String, 23, 35);
    former.note(4, XmlTag::False, 55, 55);
    former.finish("<key>name</key><string>abc</string><key>b</key><false/></dict>");
    ASSERT_TRUE(former.isUsable());
    ASSERT_EQ(former.contents().size(), 2U);
    EXPECT_EQ(former.before(former.contents()[0]), "<key>name</key><string>");
    EXPECT_EQ(former.before(former.contents()[1]), "</string><key>b</key>");
    EXPECT_EQ(former.closing(), "</dict>");
}

// Where every record is another, trying costs ever less.
TEST(FormerRecordTest, pausesLongerAfterEachMiss) {
    FormerRecord former;
    for (const int pause : {1, 3, 7, 15, 31, 63, 63}) {
        former.missed();
        EXPECT_FALSE(former.isUsable());
        for (int record = 0; record < pause; ++record)
            EXPECT_FALSE(former.begin());
        EXPECT_TRUE(former.begin());
    }
    former.matched();
    former.missed();
    EXPECT_FALSE(former.begin());
    EXPECT_TRUE(former.begin());
}

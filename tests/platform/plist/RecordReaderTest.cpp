#include "platform/plist/RecordReader.h"

#include "platform/plist/RandomBinaryList.h"
#include "platform/plist/RandomList.h"
#include "platform/plist/RecordComparison.h"

#include <gtest/gtest.h>

using namespace platform::plist;

namespace {

std::string listOf(std::string_view records) {
    return "<plist><array>" + std::string(records) + "</array></plist>";
}

} // namespace

TEST(RecordReader, agreesWithTheTreeOnRandomLists) {
    RandomList random(1);
    std::size_t sound = 0;
    for (int i = 0; i < 8000; ++i) {
        const std::string xml = random.xml();
        const Records records = recordsOf(xml);
        ASSERT_EQ(records, recordsOfTree(xml)) << xml;
        sound += records ? 1 : 0;
    }
    EXPECT_GT(sound, 4000U);
}

TEST(RecordReader, agreesWithTheTreeOnBrokenLists) {
    RandomList random(2);
    std::size_t refused = 0;
    for (int i = 0; i < 15000; ++i) {
        const std::string xml = random.broken(random.xml());
        const Records records = recordsOf(xml);
        ASSERT_EQ(records, recordsOfTree(xml)) << xml;
        refused += records ? 0 : 1;
    }
    EXPECT_GT(refused, 4000U);
}

TEST(RecordReader, agreesWithTheTreeOnListsThatProgramsWrite) {
    RandomList random(5);
    for (int i = 0; i < 8000; ++i) {
        const std::string sound = random.written();
        const std::string xml = random.below(2) == 0 ? random.broken(sound) : sound;
        ASSERT_EQ(recordsOf(xml), recordsOfTree(xml)) << xml;
    }
}

TEST(RecordReader, agreesWithTheTreeOnRandomBinaryLists) {
    RandomBinaryList random(4);
    RandomList breaks(4);
    std::size_t filled = 0;
    std::size_t refused = 0;
    for (int i = 0; i < 40000; ++i) {
        const std::string sound = random.list();
        const std::string binary = breaks.below(3) == 0 ? breaks.broken(sound) : sound;
        const Records records = recordsOf(binary);
        ASSERT_EQ(records, recordsOfTree(binary)) << testing::PrintToString(binary);
        filled += records && records->size() > 1 ? 1 : 0;
        refused += records ? 0 : 1;
    }
    EXPECT_GT(filled, 10000U);
    EXPECT_GT(refused, 5000U);
}

TEST(RecordReader, refusesAListTruncatedAnywhereBeforeItsEnd) {
    const std::string xml =
        listOf("<dict><key>date</key><real>1</real></dict><dict><key>name</key><string>&amp;"
               "\xC3\xA9</string></dict>");
    for (std::size_t size = 0; size < xml.size(); ++size) {
        // A string of its own, so that reading beyond its end is seen where that is watched for.
        const std::string cut(xml.data(), size);
        EXPECT_EQ(recordsOf(cut), std::nullopt) << size;
    }
    EXPECT_NE(recordsOf(xml), std::nullopt);
}

TEST(RecordReader, refusesAListForAFaultAfterItsRecords) {
    EXPECT_EQ(recordsOf(listOf("<dict/><dict/><string>x</string>"))->size(), 3U);
    RecordReader reader("<plist><array><dict/><dict/><string>&x;</string></array></plist>", keys);
    EXPECT_NE(reader.next(), nullptr);
    EXPECT_NE(reader.next(), nullptr);
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_FALSE(reader.isSound());
}

TEST(RecordReader, tellsAnElementThatIsNoDictionary) {
    EXPECT_EQ(recordsOf(listOf("<string>x</string><dict><key>CF$UID</key><integer>1</integer></dict>")),
              (std::vector<std::string>{"no dictionary", "no dictionary"}));
}

TEST(RecordReader, takesTheLastValueOfADuplicateKey) {
    const std::string xml =
        listOf("<dict><key>date</key><real>1</real><key>date</key><string>x</string></dict>");
    RecordReader reader(xml, keys);
    const Record* const record = reader.next();
    ASSERT_NE(record, nullptr);
    EXPECT_TRUE(record->has(0));
    EXPECT_EQ(record->number(0), std::nullopt);
    EXPECT_EQ(record->string(0), "x");
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_TRUE(reader.isSound());
}

TEST(RecordReader, readsTheOtherForms) {
    EXPECT_EQ(recordsOf("({name = x; date = 1;}, y)"), recordsOfTree("({name = x; date = 1;}, y)"));
    EXPECT_EQ(recordsOf("({name = x;}, y)")->size(), 2U);
    const std::string binary(
        "bplist00\xA1\x01\xD1\x02\x03TdateZ\x23\x3F\xF8\0\0\0\0\0\0\x08\x0A\x0D\x13\0\0\0\0\0\0\1\1"
        "\0\0\0\0\0\0\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x1C",
        28 + 4 + 32);
    EXPECT_EQ(recordsOf(binary), recordsOfTree(binary));
    EXPECT_NE(recordsOf(binary), std::nullopt);
}

TEST(RecordReader, givesNothingForAnotherRoot) {
    for (const std::string_view text :
         {"", "   ", "x", "{a = b;}", "<plist><dict/></plist>", "<string>x</string>", "<00ff>"})
        EXPECT_EQ(recordsOf(text), std::nullopt) << text;
}

namespace {

constexpr std::string_view usualRecord = "\t<dict>\n"
                                         "\t\t<key>amount</key>\n\t\t<string>1.00 €</string>\n"
                                         "\t\t<key>date</key>\n\t\t<real>12.5</real>\n"
                                         "\t\t<key>income</key>\n\t\t<true/>\n"
                                         "\t\t<key>name</key>\n\t\t<string>Rent</string>\n"
                                         "\t\t<key>revision</key>\n\t\t<integer>7</integer>\n"
                                         "\t</dict>\n";

struct Deviation {
    std::string_view part;
    std::string_view by;
};

std::string deviating(const Deviation& deviation) {
    std::string record(usualRecord);
    const std::size_t at = record.find(deviation.part);
    EXPECT_NE(at, std::string::npos) << deviation.part;
    return record.replace(at, deviation.part.size(), deviation.by);
}

} // namespace

// Lists of like records in which here and there a byte is another.
TEST(RecordReader, agreesWithTheTreeOnLikeRecords) {
    RandomList random(11);
    for (int i = 0; i < 20000; ++i) {
        std::string records;
        for (std::size_t count = 2 + random.below(5); count > 0; --count) {
            const std::string date = std::to_string(static_cast<double>(random.below(1000)) / 8 - 60);
            std::string record = deviating({"12.5", date});
            if (random.below(4) == 0)
                record = random.broken(record);
            records += record;
        }
        const std::string list = listOf(records);
        ASSERT_EQ(recordsOf(list), recordsOfTree(list)) << list;
    }
}

class DeviatingRecord : public testing::TestWithParam<Deviation> {};

// The deviating record stands after usual ones and before others, at the end, and first.
TEST_P(DeviatingRecord, isReadAsTheTreeDoes) {
    const std::string usual(usualRecord);
    const std::string other = deviating(GetParam());
    for (const std::string& records : {usual + usual + other + usual + usual, usual + usual + other,
                                       other + usual + usual, other + other + usual + other})
        EXPECT_EQ(recordsOf(listOf(records)), recordsOfTree(listOf(records))) << records;
}

TEST_P(DeviatingRecord, isEditedAsTheTreeIs) {
    const std::string usual(usualRecord);
    const std::string other = deviating(GetParam());
    for (const std::string& records : {usual + other + usual, usual + other, other + other + usual}) {
        const std::string list = listOf(records);
        const std::optional<std::string> xml = editedByDate(list);
        const std::optional<Value> tree = editedTree(list);
        ASSERT_EQ(xml.has_value(), tree.has_value()) << records;
        if (tree) {
            EXPECT_EQ(arrayOf(*xml), *tree->array()) << *xml;
        }
    }
}

TEST_P(DeviatingRecord, staysWithinAListThatEndsThere) {
    const std::string list = listOf(std::string(usualRecord) + deviating(GetParam()));
    for (std::size_t size = list.size() - usualRecord.size(); size < list.size(); ++size) {
        const std::string cut(list.data(), size);
        ASSERT_EQ(recordsOf(cut), recordsOfTree(cut)) << cut;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Contents, DeviatingRecord,
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
    Tags, DeviatingRecord,
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
    Keys, DeviatingRecord,
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

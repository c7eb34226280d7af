#include "platform/plist/RecordEditor.h"

#include "platform/plist/RandomList.h"
#include "platform/plist/RecordComparison.h"

#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

using namespace platform::plist;

namespace {

// A list as the platform writes it, with these lines between the array's tags.
std::string listOf(std::string_view records) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<array>\n" +
           std::string(records) + "</array>\n</plist>\n";
}

std::string recordOf(std::string_view date, std::string_view name = "Rent") {
    return "\t<dict>\n\t\t<key>date</key>\n\t\t<real>" + std::string(date) +
           "</real>\n\t\t<key>name</key>\n" + "\t\t<string>" + std::string(name) + "</string>\n\t</dict>\n";
}

const std::string emptyList = *writeXml(Value(Array()));

// Drops every record with a date below zero.
std::optional<std::string> withoutNegative(std::string_view bytes) {
    return edited(bytes, [](RecordEditor& editor, const Record& record) {
        if (record.isDictionary() && record.number(0).value_or(0) < 0)
            editor.drop();
    });
}

// Gives every record with a date the date 2.5.
std::optional<std::string> moved(std::string_view bytes) {
    return edited(bytes, [](RecordEditor& editor, const Record&) { editor.setNumber(0, 2.5); });
}

std::optional<std::string> kept(std::string_view bytes) {
    return edited(bytes, [](RecordEditor&, const Record&) {});
}

// Whether a list holds a value, or what of it comes back where a list had to be written anew.
bool holdsAll(std::string_view xml, const Value& value) {
    const std::optional<Array> array = arrayOf(xml);
    return array && (*array == *value.array() || array == arrayOf(*writeXml(value)));
}

Value smallRecord() {
    Dictionary record;
    record.set("pk", Value("a<b"));
    return Value(record);
}
constexpr std::string_view smallRecordLines =
    "\t<dict>\n\t\t<key>pk</key>\n\t\t<string>a&lt;b</string>\n\t</dict>\n";

} // namespace

TEST(RecordEditor, givesWhatReadingChangingAndWritingGivesOfListsThatProgramsWrite) {
    RandomList random(5);
    std::size_t changed = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string xml = random.written();
        const std::optional<std::string> edit = editedByDate(xml);
        ASSERT_EQ(edit, writeXml(*editedTree(xml))) << xml;
        ASSERT_EQ(kept(xml), xml);
        Array longer = *arrayOf(xml);
        longer.push_back(smallRecord());
        ASSERT_EQ(appended(xml, smallRecord()), writeXml(Value(longer))) << xml;
        changed += edit != xml ? 1 : 0;
    }
    EXPECT_GT(changed, 8000U);
}

// Of lists that nobody writes the values are the same, if not the bytes.
TEST(RecordEditor, agreesWithTheTreeOnRandomLists) {
    RandomList random(3);
    std::size_t sound = 0;
    for (int i = 0; i < 16000; ++i) {
        const std::string xml = random.below(3) == 0 ? random.broken(random.xml()) : random.xml();
        const std::optional<std::string> edit = editedByDate(xml);
        const std::optional<Value> tree = editedTree(xml);
        ASSERT_EQ(edit.has_value(), tree.has_value()) << xml;
        if (!tree)
            continue;
        ++sound;
        ASSERT_TRUE(holdsAll(*edit, *tree)) << xml << "\nbecame\n" << *edit;
    }
    EXPECT_GT(sound, 8000U);
}

TEST(RecordEditor, appendsARecordToWhateverStandsThere) {
    RandomList random(6);
    const Value added(Array{Value("added")});
    for (int i = 0; i < 8000; ++i) {
        const std::string xml = random.below(3) == 0 ? random.broken(random.xml()) : random.xml();
        std::optional<Array> expected = arrayOf(xml);
        const std::optional<std::string> longer = appended(xml, added);
        ASSERT_EQ(longer.has_value(), expected.has_value()) << xml;
        if (!expected)
            continue;
        expected->push_back(added);
        ASSERT_TRUE(holdsAll(*longer, Value(*expected))) << xml << "\nbecame\n" << *longer;
    }
    EXPECT_EQ(appended("()", added), writeXml(Value(Array{added})));
}

TEST(RecordEditor, isNotSoundWhereAFaultFollowsTheRecords) {
    RecordEditor editor("<plist><array><dict/><string>&x;</string></array></plist>", keys);
    ASSERT_NE(editor.next(), nullptr);
    editor.drop();
    EXPECT_EQ(editor.next(), nullptr);
    EXPECT_FALSE(editor.isSound());
}

TEST(RecordEditor, dropsARecordWithItsLines) {
    EXPECT_EQ(withoutNegative(listOf(recordOf("1") + recordOf("-1") + recordOf("2"))),
              listOf(recordOf("1") + recordOf("2")));
    EXPECT_EQ(withoutNegative(listOf(recordOf("-1") + recordOf("-2") + recordOf("2"))),
              listOf(recordOf("2")));
    EXPECT_EQ(withoutNegative(listOf(recordOf("1") + recordOf("-2"))), listOf(recordOf("1")));
}

TEST(RecordEditor, dropsARecordAloneWhereSomethingElseStandsOnItsLines) {
    const std::string record = "<dict><key>date</key><real>-1</real></dict>";
    EXPECT_EQ(withoutNegative("<plist><array>" + record + "<!-- b --></array></plist>"),
              "<plist><array><!-- b --></array></plist>\n");
    EXPECT_EQ(withoutNegative("<plist><array>\n\t<!-- a -->" + record + "\n<true/>\n</array></plist>"),
              "<plist><array>\n\t<!-- a -->\n<true/>\n</array></plist>\n");
    EXPECT_EQ(withoutNegative("<plist><array>\n" + record + " <!-- b -->\n</array></plist>"),
              "<plist><array>\n <!-- b -->\n</array></plist>\n");
}

TEST(RecordEditor, dropsARecordWithEveryKindOfLineBreak) {
    const std::string record = "<dict><key>date</key><real>-1</real></dict>";
    for (const std::string lineBreak : {"\n", "\r\n", "\r"})
        EXPECT_EQ(withoutNegative("<plist><array>" + lineBreak + "\t" + record + " " + lineBreak + "<true/>" +
                                  lineBreak + "</array></plist>"),
                  "<plist><array>" + lineBreak + "<true/>" + lineBreak + "</array></plist>\n");
}

TEST(RecordEditor, dropsARecordWithThePlistAroundIt) {
    EXPECT_EQ(withoutNegative("<plist><array>\n<plist><dict><key>date</key><real>-1</real></dict></plist>\n"
                              "<true/></array></plist>"),
              "<plist><array>\n<true/></array></plist>\n");
}

TEST(RecordEditor, leavesAnEmptyTagOfAnArrayThatHoldsWhiteSpaceAlone) {
    EXPECT_EQ(withoutNegative(listOf(recordOf("-1") + recordOf("-2"))), emptyList);
    EXPECT_EQ(
        withoutNegative("<plist><array a='b'> <dict><key>date</key><real>-1</real></dict> </array></plist>"),
        "<plist><array/></plist>\n");
    EXPECT_EQ(kept("<plist><array>\n</array></plist>"), "<plist><array/></plist>\n");
    EXPECT_EQ(kept("<plist><array></array></plist>"), "<plist><array/></plist>\n");
    EXPECT_EQ(kept("<plist><array /></plist>"), "<plist><array/></plist>\n");
}

TEST(RecordEditor, keepsTheTagsOfAnArrayThatACommentIsLeftIn) {
    EXPECT_EQ(kept("<plist><array><!-- none --></array></plist>"),
              "<plist><array><!-- none --></array></plist>\n");
}

TEST(RecordEditor, copiesWhatItDoesNotTouch) {
    const std::string head = "<!-- before --><plist  version='1.0'>\n<?pi?><array a='b'><!-- first -->\n";
    const std::string odd = "<dict ><key>n&#97;me</key><string><![CDATA[<x>]]> </string ><key>empty</key>"
                            "<array></array><key>when</key><date>2001-02-30T24:00:00Z</date>"
                            "<key>name</key><integer>0x1F</integer></dict>";
    const std::string tail = "<!-- last --></array\n></plist >";
    EXPECT_EQ(kept(head + odd + tail), head + odd + tail + "\n");
    EXPECT_EQ(withoutNegative(head + odd + recordOf("-1") + tail), head + odd + "\t\n" + tail + "\n");
}

TEST(RecordEditor, endsWithOneLineFeedAfterTheRoot) {
    const std::string list = "<plist><array><true/></array></plist>";
    for (const std::string_view after : {"", "\n", "\n\n", " \n", "<!-- more -->", "trailing <text", "\r\n"})
        EXPECT_EQ(kept(list + std::string(after)), list + "\n") << after;
}

TEST(RecordEditor, putsARecordBeforeTheArraysEnd) {
    const std::string lines(smallRecordLines);
    EXPECT_EQ(appended(listOf(recordOf("1")), smallRecord()), listOf(recordOf("1") + lines));
    EXPECT_EQ(appended(emptyList, smallRecord()), listOf(lines));
    EXPECT_EQ(appended("<plist><array /></plist>", smallRecord()),
              "<plist><array>\n" + lines + "</array></plist>\n");
    EXPECT_EQ(appended("<plist><array></array></plist>", smallRecord()),
              "<plist><array>\n" + lines + "</array></plist>\n");
    EXPECT_EQ(appended("<plist><array>\n  </array></plist>", smallRecord()),
              "<plist><array>\n" + lines + "  </array></plist>\n");
    EXPECT_EQ(appended("<plist><array><true/><!-- x --></array></plist>", smallRecord()),
              "<plist><array><true/><!-- x -->\n" + lines + "</array></plist>\n");
}

struct Move {
    const char* name;
    std::string_view before;
    std::string_view after;
};

class MovedRecord : public testing::TestWithParam<Move> {};

TEST_P(MovedRecord, getsItsNumberInPlaceOfTheOneThatCounts) {
    const auto listWith = [](std::string_view record) {
        return "<plist><array>\n<dict>" + std::string(record) + "</dict>\n</array></plist>\n";
    };
    EXPECT_EQ(moved(listWith(GetParam().before)), listWith(GetParam().after));
}

INSTANTIATE_TEST_SUITE_P(
    RecordEditor, MovedRecord,
    testing::Values(
        Move{"plain", "<key>date</key><real>1</real>", "<key>date</key><real>2.5</real>"},
        Move{"integer", "<key>date</key>\n<integer> 7</integer>", "<key>date</key>\n<real>2.5</real>"},
        Move{"boolean", "<key>date</key><true></true>", "<key>date</key><real>2.5</real>"},
        Move{"in_a_plist", "<key>date</key><plist><!-- a --><real>1</real> </plist>",
             "<key>date</key><plist><!-- a --><real>2.5</real> </plist>"},
        Move{"in_two_plists", "<key>date</key><plist><plist><real>1</real></plist></plist>",
             "<key>date</key><plist><plist><real>2.5</real></plist></plist>"},
        Move{"after_a_comment", "<key>date</key> <!-- <real>1</real> --> <real a='b'>1</real >",
             "<key>date</key> <!-- <real>1</real> --> <real>2.5</real>"},
        Move{"key_in_a_section", "<key><![CDATA[date]]></key><real>1</real>",
             "<key><![CDATA[date]]></key><real>2.5</real>"},
        Move{"key_with_a_reference", "<key>d&#97;te</key><real>1</real>",
             "<key>d&#97;te</key><real>2.5</real>"},
        Move{"key_after_a_mark",
             "<key>\xEF\xBB\xBF"
             "date</key><real>1</real>",
             "<key>\xEF\xBB\xBF"
             "date</key><real>2.5</real>"},
        Move{"last_of_equal_keys", "<key>date</key><real>1</real><key>date</key><real>3</real>",
             "<key>date</key><real>1</real><key>date</key><real>2.5</real>"},
        Move{"last_is_spelled_otherwise", "<key>date</key><real>1</real><key>d&#97;te</key><real>3</real>",
             "<key>date</key><real>1</real><key>d&#97;te</key><real>2.5</real>"},
        Move{"no_number", "<key>date</key><string>1</string>", "<key>date</key><string>1</string>"},
        Move{"last_is_no_number", "<key>date</key><real>1</real><key>date</key><string/>",
             "<key>date</key><real>1</real><key>date</key><string/>"},
        Move{"absent", "<key>name</key><real>1</real>", "<key>name</key><real>1</real>"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(RecordEditor, movesARecordInAPlist) {
    EXPECT_EQ(
        moved("<plist><array><plist><dict><key>date</key><real>1</real></dict></plist></array></plist>"),
        "<plist><array><plist><dict><key>date</key><real>2.5</real></dict></plist></array></plist>\n");
}

// Lists of the same two records that are no source to edit.
class OtherForm : public testing::TestWithParam<const char*> {};

TEST_P(OtherForm, isWrittenAsThePlatformDoes) {
    std::string bytes;
    const std::string records = recordOf("1") + recordOf("-1");
    const std::string_view form = GetParam();
    if (form == "mark")
        bytes = "\xEF\xBB\xBF" + listOf(records);
    else if (form == "latin1")
        bytes = "<?xml version='1.0' encoding='iso-8859-1'?><plist><array>" + records + "</array></plist>";
    else if (form == "no_plist")
        bytes = "<array>" + records + "</array>";
    else if (form == "utf16")
        for (const char c : "\xFF\xFE" + std::string())
            bytes += c;
    if (form == "utf16")
        for (const char c : "<plist><array>" + records + "</array></plist>")
            bytes += {c, '\0'};
    EXPECT_EQ(withoutNegative(bytes), listOf(recordOf("1")));
    EXPECT_EQ(appended(bytes, smallRecord()), listOf(records + std::string(smallRecordLines)));
}

INSTANTIATE_TEST_SUITE_P(RecordEditor, OtherForm, testing::Values("mark", "latin1", "no_plist", "utf16"),
                         [](const auto& test) { return std::string(test.param); });

TEST(RecordEditor, keepsTheEncodingThatASourceStates) {
    const std::string list = "<?xml version='1.0' encoding='utf-8'?><plist><array><true/></array></plist>\n";
    EXPECT_EQ(kept(list), list);
}

namespace {

// A binary list of one dictionary with one entry, its key or its value (ASCII otherwise) these UTF-16 units.
std::string binaryList(const std::string& key, const std::string& value) {
    const auto stringObject = [](const std::string& text) {
        return static_cast<char>(0x60 + text.size() / 2) + text;
    };
    const std::string first = stringObject(key);
    const std::string second = stringObject(value);
    const std::string objects = std::string("bplist00\xA1\x01\xD1\x02\x03") + first + second;
    const auto offsetOfSecond = static_cast<char>(13 + first.size());
    const std::string table = {'\x08', '\x0A', '\x0D', offsetOfSecond};
    return objects + table +
           std::string("\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 31) +
           static_cast<char>(objects.size());
}

} // namespace

TEST(RecordEditor, writesNoKeyWithoutItsLoneSurrogate) {
    const std::string plain("\0a", 2);
    const std::string surrogate("\0a\xD8\x00", 4);
    ASSERT_EQ(arrayOf(binaryList(plain, plain))->size(), 1U);
    EXPECT_NE(kept(binaryList(plain, plain)), std::nullopt);
    EXPECT_EQ(kept(binaryList(surrogate, plain)), std::nullopt);
    // In a value it is left out, as the writer does everywhere.
    EXPECT_EQ(kept(binaryList(plain, surrogate)), kept(binaryList(plain, plain)));
}

TEST(RecordEditor, writesNothingThatTheFormCannotHold) {
    const std::string list = listOf("");
    EXPECT_EQ(appended(list, Value()), std::nullopt);
    EXPECT_EQ(appended(list, Value(Array{Value()})), std::nullopt);
    EXPECT_EQ(appended("()", Value()), std::nullopt);
}

#include "platform/plist/RecordReader.h"

#include "platform/plist/RandomBinaryList.h"
#include "platform/plist/RandomList.h"
#include "platform/plist/RecordComparison.h"

#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>

using namespace platform::plist;

namespace {

std::string listOf(std::string_view records) {
    return "<plist><array>" + std::string(records) + "</array></plist>";
}

} // namespace

TEST(RecordReader, agreesWithTheTreeOnRandomLists) {
    RandomList random(1);
    std::size_t complete = 0;
    for (int i = 0; i < 8000; ++i) {
        const std::string xml = random.xml();
        const std::size_t stopAt = random.below(3) == 0 ? random.below(4) : never;
        const Visits visits = visitAsStream(xml, stopAt);
        ASSERT_EQ(visits, visitAsTree(xml, stopAt)) << xml;
        complete += visits.outcome == RecordsOutcome::Complete ? 1 : 0;
    }
    EXPECT_GT(complete, 4000U);
}

TEST(RecordReader, agreesWithTheTreeOnBrokenLists) {
    RandomList random(2);
    std::size_t refused = 0;
    for (int i = 0; i < 15000; ++i) {
        const std::string xml = random.broken(random.xml());
        const Visits visits = visitAsStream(xml, never);
        ASSERT_EQ(visits, visitAsTree(xml, never)) << xml;
        refused += visits.outcome == RecordsOutcome::NoArray ? 1 : 0;
    }
    EXPECT_GT(refused, 4000U);
}

TEST(RecordReader, agreesWithTheTreeOnRandomBinaryLists) {
    RandomBinaryList random(4);
    RandomList breaks(4);
    std::size_t complete = 0;
    std::size_t refused = 0;
    for (int i = 0; i < 40000; ++i) {
        const std::string sound = random.list();
        const std::string binary = breaks.below(3) == 0 ? breaks.broken(sound) : sound;
        const std::size_t stopAt = breaks.below(3) == 0 ? breaks.below(4) : never;
        const Visits visits = visitAsStream(binary, stopAt);
        ASSERT_EQ(visits, visitAsTree(binary, stopAt)) << testing::PrintToString(binary);
        complete += visits.outcome == RecordsOutcome::Complete && visits.records.size() > 1 ? 1 : 0;
        refused += visits.outcome == RecordsOutcome::NoArray ? 1 : 0;
    }
    EXPECT_GT(complete, 10000U);
    EXPECT_GT(refused, 5000U);
}

TEST(RecordReader, refusesAListTruncatedAnywhereBeforeItsEnd) {
    const std::string xml =
        listOf("<dict><key>date</key><real>1</real></dict><dict><key>name</key><string>&amp;"
               "\xC3\xA9</string></dict>");
    for (std::size_t size = 0; size < xml.size(); ++size)
        EXPECT_EQ(visitAsStream(xml.substr(0, size), never).outcome, RecordsOutcome::NoArray) << size;
    EXPECT_EQ(visitAsStream(xml, never).outcome, RecordsOutcome::Complete);
}

TEST(RecordReader, refusesAListForAFaultAfterTheRecordWhereItsVisitorStopped) {
    const std::string sound = listOf("<dict/><dict/><string>x</string>");
    const std::string broken = listOf("<dict/><dict/><string>&x;</string>");
    EXPECT_EQ(visitAsStream(sound, 0), (Visits{RecordsOutcome::Stopped, {describe(Value(Dictionary()))}}));
    EXPECT_EQ(visitAsStream(broken, 0).outcome, RecordsOutcome::NoArray);
}

TEST(RecordReader, tellsAnElementThatIsNoDictionary) {
    const Visits visits =
        visitAsStream(listOf("<string>x</string><dict><key>CF$UID</key><integer>1</integer></dict>"), never);
    EXPECT_EQ(visits.records, (std::vector<std::string>{"no dictionary", "no dictionary"}));
}

TEST(RecordReader, takesTheLastValueOfADuplicateKey) {
    const std::string xml =
        listOf("<dict><key>date</key><real>1</real><key>date</key><string>x</string></dict>");
    const RecordsOutcome outcome = visitRecords(xml, keys, [](const Record& record) {
        EXPECT_TRUE(record.has(0));
        EXPECT_EQ(record.number(0), std::nullopt);
        EXPECT_EQ(record.string(0), "x");
        return true;
    });
    EXPECT_EQ(outcome, RecordsOutcome::Complete);
}

TEST(RecordReader, readsTheOtherForms) {
    EXPECT_EQ(visitAsStream("({name = x; date = 1;}, y)", never),
              visitAsTree("({name = x; date = 1;}, y)", never));
    EXPECT_EQ(visitAsStream("({name = x;}, y)", never).records.size(), 2U);
    const std::string binary(
        "bplist00\xA1\x01\xD1\x02\x03TdateZ\x23\x3F\xF8\0\0\0\0\0\0\x08\x0A\x0D\x13\0\0\0\0\0\0\1\1"
        "\0\0\0\0\0\0\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x1C",
        28 + 4 + 32);
    const Visits visits = visitAsStream(binary, never);
    EXPECT_EQ(visits, visitAsTree(binary, never));
    EXPECT_EQ(visits.outcome, RecordsOutcome::Complete);
}

TEST(RecordReader, givesNothingForAnotherRoot) {
    for (const std::string_view text :
         {"", "   ", "x", "{a = b;}", "<plist><dict/></plist>", "<string>x</string>", "<00ff>"})
        EXPECT_EQ(visitAsStream(text, never).outcome, RecordsOutcome::NoArray) << text;
}

TEST(RecordRewriter, agreesWithTheTreeOnRandomLists) {
    RandomList random(3);
    for (int i = 0; i < 8000; ++i) {
        const std::string xml = random.below(3) == 0 ? random.broken(random.xml()) : random.xml();
        const Rewritten rewritten = rewriteAsStream(xml);
        ASSERT_EQ(rewritten.xml, rewriteAsTree(xml)) << xml;
    }
}

// Lists as a program writes them, which are rewritten as they are read.
std::string writtenList(RandomList& random) {
    Array records;
    for (std::size_t count = random.below(6); count > 0; --count) {
        Dictionary record;
        for (const char* const key : {"amount", "date", "income", "name", "planpk", "CF$UID", "rest"})
            switch (random.below(9)) {
            case 0:
                record.set(key, Value(static_cast<double>(random.below(900)) / 7 - 50));
                break;
            case 1:
                record.set(key, Value(static_cast<std::int64_t>(random.below(100)) - 50));
                break;
            case 2:
                record.set(key, Value(random.below(2) == 0));
                break;
            case 3:
                record.set(key,
                           Value(std::string(random.below(40), 'x') + (random.below(2) == 0 ? "<&>" : "")));
                break;
            case 4:
                if (random.below(10) == 0)
                    record.set(key, Value(Array{Value("inner")}));
                break;
            default:
                record.set(key, Value("text"));
            }
        records.emplace_back(record);
        if (random.below(10) == 0)
            records.emplace_back("no record");
    }
    return *writeXml(Value(records));
}

TEST(RecordRewriter, agreesWithTheTreeOnListsThatProgramsWrite) {
    RandomList random(5);
    std::size_t rewrittenLists = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string sound = writtenList(random);
        const std::string xml = random.below(2) == 0 ? random.broken(sound) : sound;
        const Rewritten rewritten = rewriteAsStream(xml);
        ASSERT_EQ(rewritten.xml, rewriteAsTree(xml)) << xml;
        rewrittenLists += rewritten.xml ? 1 : 0;
        const Rewritten kept = rewrite(sound, [](const Record&) { return RecordEdit::keep(); });
        ASSERT_EQ(kept.xml, sound);
    }
    EXPECT_GT(rewrittenLists, 10000U);
}

TEST(RecordRewriter, appendsARecordToWhateverStandsThere) {
    RandomList random(6);
    const Value added(Array{Value("added")});
    for (int i = 0; i < 4000; ++i) {
        const std::string xml = random.below(3) == 0   ? random.broken(random.xml())
                                : random.below(2) == 0 ? random.xml()
                                                       : writtenList(random);
        const ReadResult result = read(xml);
        const Value* const root = std::get_if<Value>(&result);
        const Rewritten appended = append(xml, added);
        if (!root || !root->array()) {
            ASSERT_EQ(appended.outcome, RecordsOutcome::NoArray) << xml;
            continue;
        }
        Array expected = *root->array();
        expected.push_back(added);
        ASSERT_EQ(appended.xml, writeXml(Value(expected))) << xml;
    }
    EXPECT_EQ(append("()", added).xml, writeXml(Value(Array{added})));
}

TEST(RecordRewriter, givesNothingWhereItsVisitorStopped) {
    const Rewritten rewritten =
        rewrite(listOf("<dict/><dict/>"), [](const Record&) { return RecordEdit::stop(); });
    EXPECT_EQ(rewritten.outcome, RecordsOutcome::Stopped);
    EXPECT_EQ(rewritten.xml, std::nullopt);
}

TEST(RecordRewriter, appendsAReplacedKeyThatWasAbsent) {
    const Rewritten rewritten =
        rewrite(listOf("<dict/>"), [](const Record&) { return RecordEdit::replace(0, 2.5); });
    Dictionary expected;
    expected.set("date", Value(2.5));
    EXPECT_EQ(rewritten.xml, writeXml(Value(Array{Value(expected)})));
}

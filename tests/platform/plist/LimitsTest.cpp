#include "platform/plist/ExpandedSize.h"
#include "platform/plist/Reader.h"
#include "platform/plist/RecordEditor.h"
#include "platform/plist/RecordReader.h"
#include "platform/plist/Writer.h"

#include "platform/plist/AllocationMeter.h"

#include <gtest/gtest.h>

// What no input may do: nest without end, contain itself, or take more memory than a multiple of its length.
using namespace platform::plist;

namespace {

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

bool isRead(std::string_view bytes) {
    return std::holds_alternative<Value>(read(bytes));
}

std::string messageOf(std::string_view bytes) {
    const ReadResult result = read(bytes);
    const Error* const error = std::get_if<Error>(&result);
    return error ? error->message : "read";
}

std::string bigEndianBytes(std::uint64_t value, std::size_t width) {
    std::string bytes;
    for (std::size_t i = width; i > 0; --i)
        bytes += static_cast<char>(value >> (8 * (i - 1)));
    return bytes;
}

// A binary list of these objects, the first its root, with references of two bytes.
std::string binaryList(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += bigEndianBytes(bytes.size(), 4);
        bytes += object;
    }
    const std::size_t tableOffset = bytes.size();
    return bytes + table + std::string(6, '\0') + '\4' + '\2' + bigEndianBytes(objects.size(), 8) +
           bigEndianBytes(0, 8) + bigEndianBytes(tableOffset, 8);
}

std::string arrayOf(const std::vector<std::uint64_t>& objects) {
    std::string bytes(1, static_cast<char>(0xA0 + objects.size()));
    for (const std::uint64_t object : objects)
        bytes += bigEndianBytes(object, 2);
    return bytes;
}

// So many arrays in one another, the innermost empty.
std::string binaryNesting(std::size_t depth) {
    std::vector<std::string> objects;
    for (std::size_t i = 1; i < depth; ++i)
        objects.push_back(arrayOf({i}));
    objects.push_back(arrayOf({}));
    return binaryList(objects);
}

} // namespace

TEST(Nesting, endsAt512ContainersInXml) {
    const auto arrays = [](std::size_t depth) {
        return "<plist>" + repeated("<array>", depth) + repeated("</array>", depth) + "</plist>";
    };
    const auto dictionaries = [](std::size_t depth) {
        return repeated("<dict><key>a</key>", depth) + "<true/>" + repeated("</dict>", depth);
    };
    EXPECT_TRUE(isRead(arrays(512)));
    EXPECT_FALSE(isRead(arrays(513)));
    EXPECT_TRUE(isRead(dictionaries(512)));
    EXPECT_FALSE(isRead(dictionaries(513)));
    EXPECT_EQ(messageOf(arrays(100000)), "Too many containers are nested");
}

TEST(Nesting, countsPlistTagsWithinOneAnother) {
    const auto plists = [](std::size_t depth) {
        return repeated("<plist>", depth) + "<true/>" + repeated("</plist>", depth);
    };
    EXPECT_TRUE(isRead(plists(100)));
    EXPECT_EQ(messageOf(plists(100000)), "Too many containers are nested");
}

TEST(Nesting, endsAt512FilledContainersInTheOldForm) {
    const auto arrays = [](std::size_t depth) { return repeated("(", depth) + repeated(")", depth); };
    const auto dictionaries = [](std::size_t depth) {
        return repeated("{a=", depth) + "b" + repeated(";}", depth);
    };
    EXPECT_TRUE(isRead(arrays(513))); // the innermost is empty
    EXPECT_FALSE(isRead(arrays(514)));
    EXPECT_TRUE(isRead(dictionaries(512)));
    EXPECT_FALSE(isRead(dictionaries(513)));
    EXPECT_FALSE(isRead(arrays(1000000)));
    EXPECT_FALSE(isRead(repeated("(", 1000000)));
}

TEST(Nesting, endsAt512FilledContainersInTheBinaryForm) {
    EXPECT_TRUE(isRead(binaryNesting(513)));
    EXPECT_FALSE(isRead(binaryNesting(514)));
    EXPECT_EQ(messageOf(binaryNesting(30000)), "Too many containers are nested");
}

// A hundred chains of arrays, the end of each the start of the one before, all named by the root so that each
// was read already when the next one leads to it.
TEST(Nesting, isNotHiddenByWhatWasReadElsewhere) {
    constexpr std::size_t chains = 100;
    constexpr std::size_t length = 500;
    std::string root = "\xAF\x10" + std::string(1, static_cast<char>(chains));
    std::vector<std::string> objects(1);
    for (std::size_t chain = 0; chain < chains; ++chain) {
        const std::size_t head = objects.size();
        root += bigEndianBytes(head, 2);
        for (std::size_t i = 1; i < length; ++i)
            objects.push_back(arrayOf({head + i}));
        objects.push_back(chain == 0 ? arrayOf({}) : arrayOf({head - length}));
    }
    objects[0] = root;
    EXPECT_EQ(messageOf(binaryList(objects)), "Too many containers are nested");
}

TEST(Nesting, thatNoReaderAcceptsIsNotWritten) {
    Value value{Array()};
    for (int i = 0; i < 512; ++i)
        value = Value(Array{value});
    const std::optional<std::string> deepest = writeXml(value);
    ASSERT_TRUE(deepest);
    EXPECT_EQ(std::get<Value>(read(*deepest)), value);
    EXPECT_EQ(writeXml(Value(Array{value})), std::nullopt);
}

TEST(Cycles, areRefused) {
    EXPECT_EQ(messageOf(binaryList({arrayOf({0})})), "An object contains itself");
    EXPECT_EQ(messageOf(binaryList({arrayOf({1}), arrayOf({2}), arrayOf({0})})), "An object contains itself");
    EXPECT_EQ(messageOf(binaryList({std::string("\xD1\0\1\0\0", 5), "Qa"})), "An object contains itself");
}

// Every array names the next one twice, so that there are 2^n paths to the last.
TEST(SharingBombs, areReadAtOnceAndNotWrittenOut) {
    for (const std::size_t depth : {30U, 100U, 500U}) {
        std::vector<std::string> objects;
        for (std::size_t i = 1; i <= depth; ++i)
            objects.push_back(arrayOf({i, i}));
        objects.emplace_back("\x08");
        const std::string bytes = binaryList(objects);
        const AllocationMeter meter;
        const ReadResult result = read(bytes);
        ASSERT_TRUE(std::holds_alternative<Value>(result)) << depth;
        EXPECT_EQ(writeXml(std::get<Value>(result)), std::nullopt);
        EXPECT_TRUE(expandsTooFar(std::get<Value>(result)));
        EXPECT_LT(meter.peak(), 100 * bytes.size() + 10000);
    }
}

// An array of so many references to one long text: nothing of it is copied.
TEST(SharingBombs, shareTexts) {
    const std::string text = "\x5F\x12" + bigEndianBytes(100000, 4) + std::string(100000, 'x');
    std::string array = "\xAF\x11" + bigEndianBytes(5000, 2);
    for (int i = 0; i < 5000; ++i)
        array += bigEndianBytes(1, 2);
    const std::string bytes = binaryList({array, text});
    const AllocationMeter meter;
    ASSERT_TRUE(isRead(bytes));
    EXPECT_LT(meter.peak(), 10 * bytes.size());
}

// Sixty thousand references to one record of as many entries, of which one counts; and as many records with
// one long string: a small list, whose records would fill any memory.
TEST(SharingBombs, areReadRecordByRecordInTime) {
    constexpr std::size_t count = 60000;
    std::string root = "\xAF\x11" + bigEndianBytes(count, 2);
    std::string record = "\xDF\x11" + bigEndianBytes(count, 2);
    for (std::size_t i = 0; i < count; ++i) {
        root += bigEndianBytes(1, 2);
        record += bigEndianBytes(2, 2) + bigEndianBytes(2, 2);
    }
    const std::string one = binaryList({root, record, "Qa"});
    const std::array<std::string_view, 2> keys = {"a", "b"};
    std::size_t seen = 0;
    RecordReader reader(one, keys);
    while (const Record* const next = reader.next())
        seen += next->string(0) == "a" ? 1U : 0U;
    EXPECT_TRUE(reader.isSound());
    EXPECT_EQ(seen, count);

    root = "\xAF\x11" + bigEndianBytes(count, 2);
    std::vector<std::string> objects(1);
    for (std::size_t i = 0; i < count; ++i) {
        root += bigEndianBytes(i + 3, 2);
        objects.push_back("\xD1" + bigEndianBytes(1, 2) + bigEndianBytes(2, 2));
    }
    objects[0] = root;
    objects.insert(objects.begin() + 1,
                   {"Qa", "\x6F\x12" + bigEndianBytes(100000, 4) + repeated("\x04\x1F", 100000)});
    const std::string many = binaryList(objects);
    const AllocationMeter meter;
    RecordReader bomb(many, keys);
    std::size_t length = 0;
    while (const Record* const next = bomb.next())
        length += next->string(0)->size();
    EXPECT_FALSE(bomb.isSound());
    EXPECT_LT(length, std::size_t{64} << 20U);
    EXPECT_LT(meter.peak(), 4 * many.size());
}

// A list that shares as hosts' lists do.
TEST(SharingBombs, areNoListsOfRecordsThatShareTheirStrings) {
    constexpr std::size_t count = 10000;
    std::string root = "\xAF\x11" + bigEndianBytes(count, 2);
    std::vector<std::string> objects(1);
    for (std::size_t i = 0; i < count; ++i) {
        root += bigEndianBytes(i + 3, 2);
        objects.push_back("\xD1" + bigEndianBytes(1, 2) + bigEndianBytes(2, 2));
    }
    objects[0] = root;
    objects.insert(objects.begin() + 1, {"Tname", "\x5F\x10\x20" + repeated("x", 32)});
    const std::string bytes = binaryList(objects);
    const std::array<std::string_view, 1> keys = {"name"};
    RecordReader reader(bytes, keys);
    std::size_t seen = 0;
    while (const Record* const record = reader.next())
        seen += record->string(0) ? 1U : 0U;
    EXPECT_TRUE(reader.isSound());
    EXPECT_EQ(seen, count);
}

// A list of 20 KB that names one string of 255 bytes 280,000 times.
std::string listOfShortStrings() {
    std::string inner = "\xAF\x11" + bigEndianBytes(20000, 2);
    for (int i = 0; i < 20000; ++i)
        inner += bigEndianBytes(2, 2);
    const std::string string = "\x5F\x10\xFF" + std::string(255, 'x');
    return binaryList({arrayOf(std::vector<std::uint64_t>(14, 1)), inner, string});
}

TEST(SharingBombs, ofShortStringsAreNotWrittenOut) {
    const std::string bytes = listOfShortStrings();
    EXPECT_EQ(writeXml(std::get<Value>(read(bytes))), std::nullopt);
}

TEST(SharingBombs, areNeitherReadByTheEditorNorLost) {
    const std::string bytes = listOfShortStrings();
    RecordEditor editor(bytes, {});
    EXPECT_EQ(editor.next(), nullptr);
    EXPECT_TRUE(editor.isSound());
    editor.append(Value("more"));
    EXPECT_EQ(editor.finish(), std::nullopt);
}

// An array of so many references to one long string is written out by nobody.
TEST(SharingBombs, ofOneStringAreNotWrittenOut) {
    const std::string string = "\x5F\x12" + bigEndianBytes(100000, 4) + std::string(100000, 'x');
    std::string array = "\xAF\x11" + bigEndianBytes(5000, 2);
    for (int i = 0; i < 5000; ++i)
        array += bigEndianBytes(1, 2);
    const ReadResult result = read(binaryList({array, string}));
    const AllocationMeter meter;
    EXPECT_EQ(writeXml(std::get<Value>(result)), std::nullopt);
    EXPECT_LT(meter.peak(), std::size_t{64} << 20U);
}

// Containers that begin within one another, each stating to hold all that follows.
TEST(SharingBombs, ofOverlappingObjectsAreRefused) {
    constexpr std::size_t count = 44900; // more than 0xAF12, so that the bytes are references too
    std::string objects = "bplist00";
    for (int i = 0; i < 8000; ++i)
        objects += std::string("\xAF\x12\x00\x00\x10\x00", 6);
    std::string bytes = objects;
    for (std::size_t i = 0; i < count; ++i)
        bytes += bigEndianBytes(8 + 6 * (i % 6000), 4);
    bytes += std::string(6, '\0') + '\4' + '\2' + bigEndianBytes(count, 8) + bigEndianBytes(0, 8) +
             bigEndianBytes(objects.size(), 8);
    const AllocationMeter meter;
    EXPECT_FALSE(isRead(bytes));
    EXPECT_LT(meter.peak(), 40 * bytes.size());
}

TEST(Sizes, areCheckedBeforeAnythingIsAllocated) {
    for (const char marker : {'\x4F', '\x5F', '\x6F', '\xAF', '\xCF', '\xDF'})
        for (const std::uint64_t size :
             {std::uint64_t{1} << 20U, std::uint64_t{1} << 40U, ~std::uint64_t{0}, std::uint64_t{1} << 63U}) {
            const std::string bytes = binaryList({std::string(1, marker) + '\x13' + bigEndianBytes(size, 8)});
            const AllocationMeter meter;
            EXPECT_FALSE(isRead(bytes));
            EXPECT_LT(meter.peak(), 20000U);
        }
}

struct Filling {
    const char* name;
    std::string_view before;
    std::string_view unit;
    std::string_view after;
};

class Memory : public testing::TestWithParam<Filling> {};

// The smallest texts of values, as many as fit: the multiple is that of a value's own size to its text's.
TEST_P(Memory, isASmallMultipleOfTheInput) {
    const Filling& filling = GetParam();
    const std::string bytes =
        std::string(filling.before) + repeated(filling.unit, 200000) + std::string(filling.after);
    const AllocationMeter meter;
    isRead(bytes);
    EXPECT_LT(meter.peak(), 100 * bytes.size());
}

TEST_P(Memory, andTimeGrowWithTheInputOnly) {
    const Filling& filling = GetParam();
    const auto allocationsFor = [&](std::size_t count) {
        const std::string bytes =
            std::string(filling.before) + repeated(filling.unit, count) + std::string(filling.after);
        const AllocationMeter meter;
        isRead(bytes);
        return meter.count();
    };
    EXPECT_LE(allocationsFor(100000), 10 * allocationsFor(10000) + 100);
}

INSTANTIATE_TEST_SUITE_P(
    Limits, Memory,
    testing::Values(Filling{"xml_booleans", "<array>", "<true/>", "</array>"},
                    Filling{"xml_empty_arrays", "<array>", "<array/>", "</array>"},
                    Filling{"xml_empty_texts", "<array>", "<key/>", "</array>"},
                    Filling{"xml_keys", "<dict>", "<key/><true/>", "</dict>"},
                    Filling{"xml_references", "<string>", "&lt;", "</string>"},
                    Filling{"xml_comments", "<array>", "<!---->", "</array>"},
                    Filling{"xml_unclosed", "", "<dict><key>", ""}, Filling{"old_texts", "(", "a,", ")"},
                    Filling{"old_keys", "{", "a;", "}"}, Filling{"old_escapes", "\"", "\\n", "\""},
                    Filling{"old_data", "<", "00", ">"}, Filling{"old_unclosed", "", "(", ""},
                    Filling{"old_quotes", "", "{\"", ""}),
    [](const auto& test) { return std::string(test.param.name); });

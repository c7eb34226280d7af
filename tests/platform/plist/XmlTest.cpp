#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace platform::plist;

namespace {

Value readValue(std::string_view text) {
    const ReadResult result = read(text);
    if (const Error* error = std::get_if<Error>(&result)) {
        ADD_FAILURE() << error->message << " at " << error->offset;
        return {};
    }
    return std::get<Value>(result);
}

// The lines of a list's records.
std::string linesOf(const Array& records) {
    std::string xml = *writeXml(Value(records));
    const std::size_t start = xml.find("<array>\n") + 8;
    return xml.substr(start, xml.rfind("</array>") - start);
}

Value randomValue(std::mt19937& random, int depth) {
    switch (random() % (depth > 0 ? 7 : 5)) {
    case 0:
        return Value(random() % 2 == 0);
    case 1:
        return Value(static_cast<std::int64_t>(random()));
    case 2:
        return Value(static_cast<double>(random()) / 7);
    case 3:
        return Value(Date{static_cast<double>(random())});
    case 4:
        return Value(std::string(random() % 80, random() % 4 == 0 ? '&' : 'x'));
    case 5:
        return Value(Array{randomValue(random, depth - 1), Value("y")});
    default: {
        Dictionary dictionary;
        for (std::size_t i = random() % 4; i > 0; --i)
            dictionary.set(std::string(1, static_cast<char>('a' + random() % 3)),
                           randomValue(random, depth - 1));
        return Value(dictionary);
    }
    }
}

// Often the same keys, in some order, as the record before.
Array randomRecords(std::mt19937& random, std::size_t count) {
    Array records;
    std::vector<std::string> keys = {"name", "a key that is longer than most", "d", "\xC3\xA9<", "date"};
    while (records.size() < count) {
        if (random() % 3 == 0)
            std::shuffle(keys.begin(), keys.end(), random);
        Dictionary record;
        for (std::size_t i = 0; i < (random() % 4 == 0 ? random() % keys.size() : keys.size()); ++i)
            record.set(keys[i], randomValue(random, 6));
        records.emplace_back(record);
    }
    return records;
}

} // namespace

TEST(Xml, writesEveryKindInThePlatformsForm) {
    Dictionary inner;
    inner.set("b&", Value("<text>"));
    inner.set("a", Value(Array()));
    Dictionary root;
    root.set("true", Value(true));
    root.set("integer", Value(std::int64_t{-5}));
    root.set("real", Value(0.1));
    root.set("date", Value(Date{0}));
    root.set("data", Value(Data{"\x01\x02\x03\x04"}));
    root.set("dictionary", Value(inner));
    root.set("array", Value(Array{Value("x"), Value(Dictionary())}));
    EXPECT_EQ(writeXml(Value(root)),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>array</key>
	<array>
		<string>x</string>
		<dict/>
	</array>
	<key>data</key>
	<data>
	AQIDBA==
	</data>
	<key>date</key>
	<date>2001-01-01T00:00:00Z</date>
	<key>dictionary</key>
	<dict>
		<key>a</key>
		<array/>
		<key>b&amp;</key>
		<string>&lt;text&gt;</string>
	</dict>
	<key>integer</key>
	<integer>-5</integer>
	<key>real</key>
	<real>0.10000000000000001</real>
	<key>true</key>
	<true/>
</dict>
</plist>
)");
    EXPECT_EQ(readValue(*writeXml(Value(root))), Value(root));
}

TEST(Xml, writesARecordTheSameWhateverStandsBeforeIt) {
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        const Array records = randomRecords(random, 20);
        std::string lines;
        for (const Value& record : records)
            lines += linesOf({record});
        ASSERT_EQ(linesOf(records), lines);
    }
}

TEST(Xml, readsARecordTheSameWhateverStandsBeforeIt) {
    std::mt19937 random(2);
    for (int round = 0; round < 300; ++round) {
        const Array records = randomRecords(random, 20);
        EXPECT_EQ(readValue(*writeXml(Value(records))), Value(records));
    }
    const auto record = [](std::string_view keys) {
        std::string text = "<dict>";
        for (const char key : keys)
            text +=
                std::string("<key>") + key + "</key><integer>" + std::to_string(text.size()) + "</integer>";
        return text + "</dict>";
    };
    std::string all;
    std::vector<Value> single;
    for (const std::string_view keys : {"ab", "ab", "a", "abc", "ba", "", "aa", "aba", "ab"}) {
        all += record(keys);
        single.push_back(readValue(record(keys)));
    }
    EXPECT_EQ(readValue("<array>" + all + "</array>"), Value(single));
    EXPECT_EQ(single[7].dictionary()->size(), 2U);
}

#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

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

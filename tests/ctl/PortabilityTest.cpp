#include "ctl/Portability.h"

#include <gtest/gtest.h>

#include <limits>

namespace ctl {
namespace {

namespace plist = platform::plist;

plist::Value dictionaryOf(std::string_view key, plist::Value value) {
    plist::Dictionary dictionary;
    dictionary.set(key, std::move(value));
    return plist::Value(std::move(dictionary));
}

std::string faultOf(const plist::Value& value) {
    return describeUnportable(value).value_or("none");
}

TEST(PortabilityTest, findsTheCharactersThatXmlForbids) {
    for (int code = 0; code < 0x20; ++code) {
        const bool isAllowed = code == '\n' || code == '\t';
        EXPECT_EQ(describeUnportable(plist::Value("a" + std::string(1, static_cast<char>(code)))).has_value(),
                  !isAllowed)
            << code;
    }
    EXPECT_EQ(faultOf(plist::Value("\x1f")), "the value holds U+001F, which XML forbids");
    EXPECT_EQ(faultOf(plist::Value("a\r\n")),
              "the value holds a carriage return, which XML turns into a line feed");
    EXPECT_EQ(faultOf(plist::Value("\uFFFE")), "the value holds U+FFFE, which XML forbids");
    EXPECT_EQ(faultOf(plist::Value("a\uFFFF")), "the value holds U+FFFF, which XML forbids");
    EXPECT_EQ(faultOf(plist::Value("\xED\xA0\x80")), "the value holds a lone surrogate, which XML forbids");
}

TEST(PortabilityTest, takesEveryOtherCharacter) {
    EXPECT_EQ(faultOf(plist::Value("\x7F\u0085\u009B\u2028\u202E\uFEFF\uFFFD\uD7FF\uE000\uFDD0\U0001FFFE")),
              "none");
}

TEST(PortabilityTest, findsDatesOutsideTheYears1To9999) {
    const double first = -63113904000;
    const double end = 252423993600;
    for (const double date : {first, first + 0.5, 0.0, end - 0.5})
        EXPECT_EQ(faultOf(plist::Value(plist::Date{date})), "none") << date;
    for (const double date :
         {first - 0.5, end, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(faultOf(plist::Value(plist::Date{date})), "the value is a date outside the years 1 to 9999")
            << date;
}

TEST(PortabilityTest, namesRecordKeyAndElement) {
    const plist::Value bad("\x01");
    const plist::Value note(plist::Array{plist::Value(true), dictionaryOf("a", bad)});
    EXPECT_EQ(faultOf(plist::Value(plist::Array{plist::Value("x"), dictionaryOf("note", note)})),
              "record 2: \"note\", element 2, \"a\" holds U+0001, which XML forbids");
    EXPECT_EQ(faultOf(plist::Value(plist::Array{bad})), "record 1 holds U+0001, which XML forbids");
    EXPECT_EQ(faultOf(dictionaryOf("account_pk", bad)), "\"account_pk\" holds U+0001, which XML forbids");
    EXPECT_EQ(faultOf(dictionaryOf("b\r", plist::Value(true))),
              "\"b\r\" is a key that holds a carriage return, which XML turns into a line feed");
}

TEST(PortabilityTest, reportsEachUntilToldToStop) {
    const plist::Value list(plist::Array{plist::Value("\x01"), plist::Value("ok"), plist::Value("\x02")});
    std::vector<std::string> places;
    findUnportable(list, [&](const Unportable& found) {
        places.push_back(describe(found.path));
        return true;
    });
    EXPECT_EQ(places, (std::vector<std::string>{"record 1", "record 3"}));
    int calls = 0;
    findUnportable(list, [&](const Unportable&) { return ++calls == 0; });
    EXPECT_EQ(calls, 1);
}

TEST(PortabilityTest, looksAtSharedContentsOnce) {
    plist::Value bomb(plist::Array{plist::Value("\x01")});
    for (int level = 0; level < 100; ++level)
        bomb = plist::Value(plist::Array{bomb, bomb});
    int calls = 0;
    findUnportable(bomb, [&](const Unportable&) { return ++calls > 0; });
    EXPECT_EQ(calls, 1);
}

// So many texts of that length would take minutes.
TEST(PortabilityTest, looksAtALongTextOnceHoweverOftenItIsNamed) {
    const plist::Value text(std::string(1'000'000, 'a') + '\x01');
    plist::Array list(100'000, text);
    for (int count = 0; count < 100'000; ++count)
        list.emplace_back(plist::Dictionary({{text.sharedString(), plist::Value(true)}},
                                            plist::Dictionary::Duplicates::KeepFirst));
    int calls = 0;
    findUnportable(plist::Value(list), [&](const Unportable&) { return ++calls > 0; });
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace ctl

#include "platform/plist/text/Unicode.h"

#include "platform/plist/ascii/NextStep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace platform::plist;

namespace {

bool isUtf8Slowly(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const CodePoint point = codePointAt(text, at);
        if (point.length == 1 && point.value >= 0x80)
            return false;
        if (point.value >= 0xD800 && point.value <= 0xDFFF)
            return false;
        at += point.length;
    }
    return true;
}

} // namespace

TEST(Text, ofTwoBytesAUnitIsReadWithItsSurrogates) {
    const auto read = [](std::u16string_view units) {
        std::string bytes;
        for (const char16_t unit : units)
            bytes += {static_cast<char>(unit >> 8U), static_cast<char>(unit)};
        return textOfBigEndianUtf16(bytes);
    };
    EXPECT_EQ(read(u""), "");
    EXPECT_EQ(read(u"abcdefgh1"), "abcdefgh1");
    EXPECT_EQ(read(u"abc\u0080efgh"), "abc\xC2\x80"
                                      "efgh");
    EXPECT_EQ(read(u"\u20AC \U0001F600"), "\xE2\x82\xAC \xF0\x9F\x98\x80");
    constexpr char16_t alone[] = {0xDC00, 'x', 0xD83D, 0xD83D, 0xDE00, 0xD800};
    EXPECT_EQ(read({alone, 6}), "\xED\xB0\x80x\xED\xA0\xBD\xF0\x9F\x98\x80\xED\xA0\x80");
}

struct Utf8Case {
    const char* name;
    std::string_view bytes;
    bool isValid;
};

class Utf8 : public testing::TestWithParam<Utf8Case> {};

TEST_P(Utf8, isValidAtAnyPlaceOrNot) {
    for (std::size_t before = 0; before < 20; ++before)
        EXPECT_EQ(isUtf8(std::string(before, 'a') + std::string(GetParam().bytes) + "bcdefghij"),
                  GetParam().isValid)
            << before;
}

INSTANTIATE_TEST_SUITE_P(
    Text, Utf8,
    testing::Values(Utf8Case{"ascii", "a\x7F", true}, Utf8Case{"two bytes", "\xC2\x80\xDF\xBF", true},
                    Utf8Case{"three bytes", "\xE0\xA0\x80\xEF\xBF\xBF", true},
                    Utf8Case{"four bytes", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", true},
                    Utf8Case{"before surrogates", "\xED\x9F\xBF\xEE\x80\x80", true},
                    Utf8Case{"overlong two", "\xC0\x80", false}, Utf8Case{"overlong C1", "\xC1\xBF", false},
                    Utf8Case{"overlong three", "\xE0\x9F\xBF", false},
                    Utf8Case{"overlong four", "\xF0\x8F\xBF\xBF", false},
                    Utf8Case{"surrogate", "\xED\xA0\x80", false},
                    Utf8Case{"above the last", "\xF4\x90\x80\x80", false},
                    Utf8Case{"five bytes", "\xF8\x88\x80\x80\x80", false},
                    Utf8Case{"lone continuation", "\x80", false}, Utf8Case{"cut short", "\xE2\x82", false},
                    Utf8Case{"lead after lead", "\xC3\xC3", false}),
    [](const auto& test) {
        std::string name = test.param.name;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

TEST(Text, isCheckedAsOneCharacterAfterTheOther) {
    std::mt19937 random(2);
    constexpr std::string_view bytes = "ab\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xED\xA0\x80";
    for (int i = 0; i < 50000; ++i) {
        std::string text(random() % 24, 'x');
        for (char& c : text)
            if (random() % 3 == 0)
                c = bytes[random() % bytes.size()];
        ASSERT_EQ(isUtf8(text), isUtf8Slowly(text));
    }
}

TEST(Text, joinsSurrogatesThatFollowOneAnother) {
    std::string text;
    appendUtf16Unit(text, 0xD83D);
    EXPECT_EQ(text, "\xED\xA0\xBD");
    appendUtf16Unit(text, 0xDE00);
    EXPECT_EQ(text, "\xF0\x9F\x98\x80");
    appendUtf16Unit(text, 0xDE00);
    EXPECT_EQ(text, "\xF0\x9F\x98\x80\xED\xB8\x80");
}

TEST(Text, isSortedByUtf16Units) {
    // The last but one is two units from U+D800, below U+E000, although its bytes are above.
    const std::string_view sorted[] = {"",
                                       "a",
                                       "ab",
                                       "b",
                                       "\xC3\xA9",
                                       "\xED\x9F\xBF",
                                       "\xED\xA0\x80",
                                       "\xED\xA0\x80z",
                                       "\xF0\x90\x80\x80",
                                       "\xF0\x9F\x98\x80",
                                       "\xEE\x80\x80",
                                       "\xEF\xBF\xBF"};
    for (std::size_t i = 0; i < std::size(sorted); ++i)
        for (std::size_t j = 0; j < std::size(sorted); ++j)
            EXPECT_EQ(precedesInUtf16(sorted[i], sorted[j]), i < j) << i << ' ' << j;
}

TEST(Text, countsLinesByEveryKindOfEnd) {
    constexpr std::string_view text = "a\nb\r\nc\rd";
    EXPECT_EQ(lineAt(text, 0), 1U);
    EXPECT_EQ(lineAt(text, 2), 2U);
    EXPECT_EQ(lineAt(text, 5), 3U);
    EXPECT_EQ(lineAt(text, 7), 4U);
    EXPECT_EQ(lineAt(text, 100), 4U);
}

TEST(Text, knowsTheNextStepSet) {
    EXPECT_EQ(nextStepCharacter('A'), u'A');
    EXPECT_EQ(nextStepCharacter(0x80), 0x00A0);
    EXPECT_EQ(nextStepCharacter(0xAE), 0xFB01);
    EXPECT_EQ(nextStepCharacter(0xE1), 0x00C6);
    EXPECT_EQ(nextStepCharacter(0xFD), 0x00FF);
    EXPECT_EQ(nextStepCharacter(0xFE), 0x0000);
}

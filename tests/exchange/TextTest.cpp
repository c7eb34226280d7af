#include "exchange/Text.h"

#include <gtest/gtest.h>

namespace exchange {
namespace {

struct Row {
    const char* name;
    std::string utf8;
    std::u16string utf16;
};

class TextTable : public testing::TestWithParam<Row> {
protected:
    // Unit by unit: QString's conversions drop a mark in front.
    [[nodiscard]] static QString utf16() {
        const std::u16string& units = GetParam().utf16;
        return QString(reinterpret_cast<const QChar*>(units.data()), static_cast<qsizetype>(units.size()));
    }
};

TEST_P(TextTable, becomesUtf16) {
    EXPECT_EQ(textFromUtf8(GetParam().utf8), utf16());
}

TEST_P(TextTable, becomesUtf8) {
    EXPECT_EQ(utf8FromText(utf16()), GetParam().utf8);
}

using namespace std::string_literals;

INSTANTIATE_TEST_SUITE_P(
    Texts, TextTable,
    testing::Values(Row{"Empty", "", u""}, Row{"Ascii", "Rent", u"Rent"},
                    Row{"Cyrillic", "\xD0\x96\xD1\x83\xD0\xBA", u"\u0416\u0443\u043A"},
                    Row{"BeyondTheBasicPlane", "a\xF0\x9F\x8F\xA0z", u"a\U0001F3E0z"},
                    Row{"WithNul", "a\0b"s, u"a\0b"s},
                    Row{"ByteOrderMarkInFront", "\xEF\xBB\xBF-1", u"\uFEFF-1"},
                    Row{"TwoByteOrderMarksInFront", "\xEF\xBB\xBF\xEF\xBB\xBF", u"\uFEFF\uFEFF"},
                    Row{"LastBeforeTheSurrogates", "\xED\x9F\xBF", u"\uD7FF"},
                    Row{"LoneHighSurrogate", "a\xED\xA0\xBCz", {u'a', char16_t(0xD83C), u'z'}},
                    Row{"LoneLowSurrogateAtTheEnd", "a\xED\xBF\xA0", {u'a', char16_t(0xDFE0)}},
                    Row{"LoneSurrogateBeforeAMark",
                        "\xED\xA0\xBC\xEF\xBB\xBF"
                        "b",
                        {char16_t(0xD83C), char16_t(0xFEFF), u'b'}},
                    Row{"LoneSurrogateBesideAPair",
                        "\xED\xA0\xBC\xF0\x9F\x8F\xA0\xED\xBF\xA0",
                        {char16_t(0xD83C), char16_t(0xD83C), char16_t(0xDFE0), char16_t(0xDFE0)}}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace exchange

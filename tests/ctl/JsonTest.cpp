#include "ctl/Json.h"
#include "ctl/JsonReader.h"

#include <gtest/gtest.h>

#include <limits>

namespace ctl {
namespace {

namespace plist = platform::plist;

plist::Value valueOf(std::string_view json) {
    const auto result = readJson(json);
    if (const auto* error = std::get_if<JsonError>(&result))
        ADD_FAILURE() << error->line << ":" << error->column << ": " << error->message;
    const auto* value = std::get_if<plist::Value>(&result);
    return value ? *value : plist::Value();
}

TEST(JsonReaderTest, tellsIntegersFromReals) {
    EXPECT_EQ(valueOf("1"), plist::Value(std::int64_t(1)));
    EXPECT_EQ(valueOf("-0"), plist::Value(std::int64_t(0)));
    EXPECT_EQ(valueOf("1.0"), plist::Value(1.0));
    EXPECT_EQ(valueOf("-0.0"), plist::Value(-0.0));
    EXPECT_EQ(valueOf("1e2"), plist::Value(100.0));
    EXPECT_EQ(valueOf("2.5E-1"), plist::Value(0.25));
    EXPECT_EQ(valueOf("1e-999"), plist::Value(0.0));
}

TEST(JsonReaderTest, keepsEveryDigitOfAnInteger) {
    EXPECT_EQ(valueOf("9007199254740993"), plist::Value(std::int64_t(9007199254740993)));
    EXPECT_EQ(valueOf("-9223372036854775808"), plist::Value(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(valueOf("18446744073709551615"), plist::Value(plist::Integer{~std::uint64_t(0), true}));
}

TEST(JsonReaderTest, readsTextsWithTheirEscapes) {
    EXPECT_EQ(valueOf(R"("a\"\\\/\b\f\n\r\t\u20ac\uD83C\uDFE0")"), plist::Value("a\"\\/\b\f\n\r\t€🏠"));
    EXPECT_EQ(valueOf("\"\xEF\xBB\xBFž\\ufeff\""), plist::Value("\xEF\xBB\xBFž\xEF\xBB\xBF"));
    EXPECT_EQ(valueOf(R"("a\u0000b")"), plist::Value(std::string("a\0b", 3)));
}

TEST(JsonReaderTest, readsContainersInTheirOrder) {
    const plist::Value value = valueOf(" { \"b\" : [ true , false , null , [ ] ] , \"a\" : { } } ");
    ASSERT_TRUE(value.dictionary());
    ASSERT_EQ(value.dictionary()->size(), 2u);
    EXPECT_EQ(value.dictionary()->keyAt(0), "b");
    EXPECT_EQ(value.dictionary()->valueAt(0),
              plist::Value(plist::Array{plist::Value(true), plist::Value(false), plist::Value(),
                                        plist::Value(plist::Array())}));
    EXPECT_EQ(value.dictionary()->valueAt(1), plist::Value(plist::Dictionary()));
}

TEST(JsonReaderTest, readsManyKeysAsFastAsManyElements) {
    // Where each key is compared with all before it, this takes longer than a test may.
    constexpr std::size_t count = 200000;
    std::string json = "{";
    for (std::size_t key = 0; key < count; ++key)
        json += (key == 0 ? "\"" : ",\"") + std::to_string(key) + "\":0";
    const plist::Value value = valueOf(json + "}");
    ASSERT_TRUE(value.dictionary());
    EXPECT_EQ(value.dictionary()->size(), count);
    EXPECT_EQ(value.dictionary()->keyAt(count - 1), std::to_string(count - 1));
}

TEST(JsonReaderTest, passesOverAByteOrderMark) {
    EXPECT_EQ(valueOf("\xEF\xBB\xBF[]"), plist::Value(plist::Array()));
}

TEST(JsonReaderTest, readsContainersNestedAsDeeplyAsIsAllowed) {
    EXPECT_TRUE(valueOf(std::string(501, '[') + std::string(501, ']')).array());
}

struct Fault {
    const char* name;
    std::string json;
    std::size_t line;
    std::size_t column;
    std::string message;
};

// Parts of the library's messages.
const std::string inValue = "syntax error while parsing value - ";
const std::string noValue = "; expected '[', '{', or a literal";

class JsonFaultTable : public testing::TestWithParam<Fault> {};

TEST_P(JsonFaultTable, isNamedWithItsPlace) {
    const auto result = readJson(GetParam().json);
    const auto* error = std::get_if<JsonError>(&result);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->message, GetParam().message);
    EXPECT_EQ(error->line, GetParam().line);
    EXPECT_EQ(error->column, GetParam().column);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, JsonFaultTable,
    testing::Values(
        Fault{"Nothing", "", 1, 1, inValue + "unexpected end of input" + noValue},
        Fault{"Word", "[\n tru]", 2, 5, inValue + "invalid literal"},
        Fault{"LeadingZero", "[01]", 1, 3,
              "syntax error while parsing array - unexpected number literal; expected ']'"},
        Fault{"PlusSign", "+1", 1, 1, inValue + "invalid literal"},
        Fault{"MinusAlone", "-", 1, 2, inValue + "invalid number; expected digit after '-'"},
        Fault{"PointWithoutDigit", "1.", 1, 3, inValue + "invalid number; expected digit after '.'"},
        Fault{"ExponentWithoutDigit", "1e+", 1, 4,
              inValue + "invalid number; expected digit after exponent sign"},
        Fault{"IntegerTooLarge", "18446744073709551616", 1, 21, "the number is out of range"},
        Fault{"IntegerTooLargeInAnArray", "[18446744073709551616 ]", 1, 22, "the number is out of range"},
        Fault{"IntegerTooSmall", "-9223372036854775809", 1, 21, "the number is out of range"},
        Fault{"RealTooLarge", "1e999", 1, 6, "the number is out of range"},
        Fault{"RealTooLargeInAnArray", "[-1.5e999]", 1, 10, "the number is out of range"},
        Fault{"TrailingComma", "[1,]", 1, 4, inValue + "unexpected ']'" + noValue},
        Fault{"ArrayNotClosed", "[1\n", 2, 1,
              "syntax error while parsing array - unexpected end of input; expected ']'"},
        Fault{"ObjectNotClosed", "{\"a\":1", 1, 7,
              "syntax error while parsing object - unexpected end of input; expected '}'"},
        Fault{"KeyWithoutQuotes", "{a:1}", 1, 2,
              "syntax error while parsing object key - invalid literal; expected string literal"},
        Fault{"ColonMissing", "{\"a\" 1}", 1, 6,
              "syntax error while parsing object separator - unexpected number literal; expected ':'"},
        Fault{"KeyTwice", "{\"a\":1,\"a\":2}", 1, 11, "the key \"a\" is repeated"},
        Fault{"TextNotClosed", "\"ab", 1, 4, inValue + "invalid string: missing closing quote"},
        Fault{"LineBreakInText", "\"a\nb\"", 1, 3,
              inValue + "invalid string: control character U+000A (LF) must be escaped to \\u000A or \\n"},
        Fault{"UnknownEscape", R"("\x")", 1, 3,
              inValue + "invalid string: forbidden character after backslash"},
        Fault{"ShortEscape", R"("\u12")", 1, 6,
              inValue + "invalid string: '\\u' must be followed by 4 hex digits"},
        Fault{"SignInEscape", R"("\u+123")", 1, 4,
              inValue + "invalid string: '\\u' must be followed by 4 hex digits"},
        Fault{"LoneSurrogate", R"("\uD83C")", 1, 8,
              inValue + "invalid string: surrogate U+D800..U+DBFF must be followed by U+DC00..U+DFFF"},
        Fault{"SurrogateInUtf8", "\"\xED\xA0\xBC\"", 1, 3, inValue + "invalid string: ill-formed UTF-8 byte"},
        Fault{"NotUtf8", "\"\xFF\"", 1, 2, inValue + "invalid string: ill-formed UTF-8 byte"},
        Fault{"SomethingFollows", "[] x", 1, 4, inValue + "invalid literal; expected end of input"},
        Fault{"NulFollows", std::string("[]\n\0[", 5), 2, 1, "syntax error - a NUL follows the value"},
        Fault{"TooDeep", std::string(100000, '['), 1, 502, "the nesting is too deep"}),
    [](const auto& row) { return row.param.name; });

TEST(JsonTest, writesNumbersWithTheFewestDigitsThatReadBack) {
    EXPECT_EQ(jsonNumber(0.1), "0.1");
    EXPECT_EQ(jsonNumber(1773165600), "1773165600");
    EXPECT_EQ(jsonNumber(1773146700.1234567), "1773146700.1234567");
    EXPECT_EQ(jsonNumber(5e-324), "5e-324");
    EXPECT_EQ(jsonNumber(std::numeric_limits<double>::quiet_NaN()), "\"nan\"");
    EXPECT_EQ(jsonNumber(std::numeric_limits<double>::infinity()), "\"inf\"");
    EXPECT_EQ(jsonNumber(-std::numeric_limits<double>::infinity()), "\"-inf\"");
}

TEST(JsonTest, escapesWhatCannotStandInAText) {
    EXPECT_EQ(jsonString(QStringLiteral("a\"\\\n\x1b\x7f€")), "\"a\\\"\\\\\\u000a\\u001b\\u007f€\"");
    EXPECT_EQ(jsonString(QString::fromUtf8("🏠")), "\"🏠\"");
    EXPECT_EQ(jsonString(QString(QChar(0xD83C)) + u'x'), "\"\\ud83cx\"");
}

TEST(JsonTest, escapesWhatIsUnsafeOnATerminal) {
    EXPECT_EQ(jsonString(QStringLiteral("\u0085\u009B\u061C\u200E\u202E\u2028\u2029\u2066\uFEFF")),
              "\"\\u0085\\u009b\\u061c\\u200e\\u202e\\u2028\\u2029\\u2066\\ufeff\"");
    EXPECT_EQ(jsonString(QStringLiteral("\u00A0\u200D\u202F\uFFFD")), "\"\u00A0\u200D\u202F\uFFFD\"");
}

TEST(JsonTest, writesValuesThatReadBack) {
    const char* json = R"({"b": [1, 2.5, true, 18446744073709551615, -7], "a": {"c": "x\"y", "d": []}})";
    EXPECT_EQ(jsonValue(valueOf(json)), json);
    EXPECT_EQ(jsonValue(plist::Value(plist::Data{"\x01"})), R"({"data":"01"})");
}

} // namespace
} // namespace ctl

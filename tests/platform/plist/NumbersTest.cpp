#include "platform/plist/xml/Numbers.h"

#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"
#include "platform/plist/xml/Base64.h"
#include "platform/plist/xml/Dates.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

using namespace platform::plist;

namespace {

std::string formatted(double value) {
    std::string text;
    appendReal(text, value);
    return text;
}

std::string formattedByC(double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.17g", value);
    return text.data();
}

std::string dateText(double seconds) {
    std::string text;
    return appendDate(text, seconds) ? text : text + "none";
}

std::uint64_t bitsOf(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

// Through the writer and the reader of whole lists.
double writtenAndRead(double value) {
    const ReadResult result = read(*writeXml(Value(value)));
    return *std::get<Value>(result).real();
}

} // namespace

TEST(Reals, areWrittenAsCDoesAndComeBackBitForBit) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 1'000'000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value) || value == 0)
            continue;
        const std::string text = formatted(value);
        ASSERT_EQ(text, formattedByC(value));
        ASSERT_EQ(bitsOf(parseReal(text).value_or(0)), bitsOf(value)) << text;
    }
}

// The range of dates, whose digits are made in another way than those of other numbers.
TEST(Reals, ofTheSizeOfDatesAreWrittenAsCDoesAndComeBackBitForBit) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 1'000'000; ++i) {
        const auto exponent = 1020 + random() % 60;
        const double value = std::bit_cast<double>((random() & 0x800FFFFFFFFFFFFFU) |
                                                   (static_cast<std::uint64_t>(exponent) << 52U));
        const std::string text = formatted(value);
        ASSERT_EQ(text, formattedByC(value));
        ASSERT_EQ(bitsOf(parseReal(text).value_or(0)), bitsOf(value)) << text;
    }
}

TEST(Reals, thatAreHardComeBackBitForBit) {
    const double values[] = {std::numeric_limits<double>::min(),
                             std::numeric_limits<double>::max(),
                             std::numeric_limits<double>::denorm_min(),
                             std::numeric_limits<double>::epsilon(),
                             0.1,
                             1.0 / 3,
                             2.5,
                             0x1p52,
                             0x1p53,
                             0x1p53 - 1,
                             0x1p53 + 2,
                             0x1.fffffffffffffp52,
                             1.0,
                             std::nextafter(1.0, 0.0),
                             std::nextafter(1.0, 2.0),
                             9.9999999999999999e15,
                             99.99999999999999,
                             9.999999999999998,
                             1e17,
                             1e16,
                             1e22,
                             1e23,
                             123456789012345678.0,
                             1710082800.123,
                             2.2250738585072011e-308,
                             8.41e21,
                             5e-324,
                             0.5,
                             1.5,
                             1e-5,
                             1e-4,
                             4503599627370497.5,
                             4503599627370496.5,
                             1125899906842624.125};
    for (const double value : values)
        for (const double signedValue : {value, -value}) {
            EXPECT_EQ(bitsOf(writtenAndRead(signedValue)), bitsOf(signedValue)) << signedValue;
            EXPECT_EQ(formatted(signedValue), formattedByC(signedValue));
        }
}

TEST(Reals, areNamedWhereTheyAreNoNumbers) {
    EXPECT_EQ(formatted(0.0), "0.0");
    EXPECT_EQ(formatted(-0.0), "0.0");
    EXPECT_EQ(formatted(std::numeric_limits<double>::infinity()), "+infinity");
    EXPECT_EQ(formatted(-std::numeric_limits<double>::infinity()), "-infinity");
    EXPECT_EQ(formatted(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(formatted(-std::numeric_limits<double>::quiet_NaN()), "nan");
}

struct RealCase {
    const char* text;
    std::optional<double> value;
};

class RealTexts : public testing::TestWithParam<RealCase> {};

TEST_P(RealTexts, areReadAsThePlatformDoes) {
    const std::optional<double> value = parseReal(GetParam().text);
    ASSERT_EQ(value.has_value(), GetParam().value.has_value());
    EXPECT_EQ(bitsOf(value.value_or(0)), bitsOf(GetParam().value.value_or(0)));
}

namespace {
constexpr double infinity = std::numeric_limits<double>::infinity();
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, RealTexts,
    testing::Values(RealCase{"1", 1.0}, RealCase{"+1.5", 1.5}, RealCase{"-.5", -0.5}, RealCase{"5.", 5.0},
                    RealCase{"1e3", 1000.0}, RealCase{"1E+3", 1000.0}, RealCase{"-0", -0.0},
                    RealCase{" \t\n1", 1.0},
                    RealCase{"\xC2\xA0\xE2\x80\x83\xE3\x80\x80"
                             "7",
                             7.0},
                    RealCase{"1e400", infinity}, RealCase{"-1e400", -infinity}, RealCase{"1e-400", 0.0},
                    RealCase{"-1e-400", -0.0}, RealCase{"0e99999999999999999999", 0.0},
                    RealCase{"1e99999999999999999999", infinity}, RealCase{"1e-99999999999999999999", 0.0},
                    RealCase{"0.0000000001e400", infinity},
                    RealCase{"nAn", std::numeric_limits<double>::quiet_NaN()}, RealCase{"+INF", infinity},
                    RealCase{"-Infinity", -infinity}, RealCase{"inf", infinity}, RealCase{"", {}},
                    RealCase{" ", {}}, RealCase{"1 ", {}}, RealCase{"1,5", {}}, RealCase{"0x10", {}},
                    RealCase{"1e", {}}, RealCase{"1e+", {}}, RealCase{".", {}}, RealCase{"-", {}},
                    RealCase{"+-1", {}}, RealCase{"--1", {}}, RealCase{"- 1", {}}, RealCase{"nan(1)", {}},
                    RealCase{"+nan", {}}, RealCase{" nan", {}}, RealCase{"infinit", {}},
                    RealCase{"1.5.2", {}}, RealCase{"1d3", {}}, RealCase{"\xEF\xBC\x91", {}}));

struct IntegerCase {
    std::string_view text;
    std::optional<Integer> value;
};

class IntegerTexts : public testing::TestWithParam<IntegerCase> {};

TEST_P(IntegerTexts, areReadAsThePlatformDoes) {
    const IntegerText integer = parseInteger(GetParam().text);
    ASSERT_EQ(integer.fault == nullptr, GetParam().value.has_value());
    EXPECT_EQ(integer.value, GetParam().value.value_or(Integer()));
    EXPECT_LE(integer.faultOffset, GetParam().text.size());
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, IntegerTexts,
    testing::Values(IntegerCase{"0", Integer{0, false}}, IntegerCase{"-0", Integer{0, false}},
                    IntegerCase{"007", Integer{7, false}}, IntegerCase{"+ 5", Integer{5, false}},
                    IntegerCase{" \t- \n5", Integer{~std::uint64_t{4}, false}},
                    IntegerCase{"0x1f", Integer{31, false}},
                    IntegerCase{"-0X10", Integer{~std::uint64_t{15}, false}},
                    IntegerCase{"9223372036854775807", Integer{0x7FFFFFFFFFFFFFFFU, false}},
                    IntegerCase{"9223372036854775808", Integer{0x8000000000000000U, true}},
                    IntegerCase{"18446744073709551615", Integer{~std::uint64_t{0}, true}},
                    IntegerCase{"-9223372036854775808", Integer{0x8000000000000000U, false}},
                    IntegerCase{"00000000000000000000000000000042", Integer{42, false}},
                    IntegerCase{"\xE2\x80\x8B"
                                "3",
                                Integer{3, false}},
                    IntegerCase{"\x80"
                                "3",
                                Integer{3, false}},
                    IntegerCase{"18446744073709551616", {}}, IntegerCase{"-9223372036854775809", {}},
                    IntegerCase{"0x10000000000000000", {}}, IntegerCase{"", {}}, IntegerCase{" ", {}},
                    IntegerCase{"-", {}}, IntegerCase{"0x", {}}, IntegerCase{"1 ", {}},
                    IntegerCase{"1.0", {}}, IntegerCase{"1e3", {}}, IntegerCase{"12a", {}},
                    IntegerCase{"x1", {}},
                    IntegerCase{"\xC2\xA0"
                                "3",
                                {}},
                    IntegerCase{"\xE2\x80\xAF"
                                "3",
                                {}}));

TEST(Integers, areWrittenOverTheirWholeRange) {
    const auto written = [](Integer value) {
        std::string text;
        appendInteger(text, value);
        return text;
    };
    EXPECT_EQ(written({0x8000000000000000U, false}), "-9223372036854775808");
    EXPECT_EQ(written({0x8000000000000000U, true}), "9223372036854775808");
    EXPECT_EQ(written({~std::uint64_t{0}, true}), "18446744073709551615");
    EXPECT_EQ(written({~std::uint64_t{0}, false}), "-1");
}

TEST(Dates, countFrom2001) {
    EXPECT_EQ(parseDate("2001-01-01T00:00:00Z"), 0.0);
    EXPECT_EQ(parseDate("1970-01-01T00:00:00Z"), -978307200.0);
    EXPECT_EQ(parseDate("2024-02-29T23:59:59Z"), 730943999.0);
    EXPECT_EQ(parseDate("0001-01-01T00:00:00Z"), -63113904000.0);
}

TEST(Dates, addFieldsUpThatNoCalendarHas) {
    EXPECT_EQ(parseDate("2001-02-30T00:00:00Z"), parseDate("2001-03-02T00:00:00Z"));
    EXPECT_EQ(parseDate("2001-01-01T24:60:60Z"), parseDate("2001-01-02T01:01:00Z"));
    EXPECT_EQ(parseDate("2001-13-01T00:00:00Z"), parseDate("2002-01-01T00:00:00Z"));
    EXPECT_EQ(parseDate("24-01-02T03:04:05Z"), parseDate("0024-01-02T03:04:05Z"));
}

TEST(Dates, areRefusedInAnyOtherForm) {
    for (const std::string_view text :
         {"", "2001-1-01T00:00:00Z", "2001-01-01 00:00:00Z", "2001-01-01T00:00:00", "2001-01-01T00:00:00.5Z",
          "2001-01-01T00:00:00Z ", " 2001-01-01T00:00:00Z", "2001-01-01T00:00Z", "2001-01-01T00:00:00+00:00",
          "99999999999-01-01T00:00:00Z", "+2001-01-01T00:00:00Z"})
        EXPECT_EQ(parseDate(text), std::nullopt) << text;
}

TEST(Dates, comeBackForEveryDayOfManyYears) {
    for (int day = -800000; day < 800000; day += 17) {
        const double seconds = day * 86400.0 + (day & 0xFFFF);
        ASSERT_EQ(parseDate(dateText(seconds)), seconds) << dateText(seconds);
    }
    EXPECT_EQ(dateText(-63113904001.0), "0000-12-31T23:59:59Z");
    EXPECT_EQ(dateText(-63145526401.0), "-001-12-31T23:59:59Z");
    EXPECT_EQ(dateText(-0.5), "2000-12-31T23:59:59Z");
}

TEST(Dates, areNotWrittenWhereNoCalendarReaches) {
    EXPECT_EQ(dateText(std::numeric_limits<double>::infinity()), "none");
    EXPECT_EQ(dateText(std::numeric_limits<double>::quiet_NaN()), "none");
    EXPECT_EQ(dateText(1e18), "none");
    EXPECT_EQ(writeXml(Value(Array{Value(Date{-1e300})})), std::nullopt);
}

TEST(Base64, isReadAsLenientlyAsThePlatformDoes) {
    EXPECT_EQ(decodeBase64("AAEC"), std::string("\0\1\2", 3));
    EXPECT_EQ(decodeBase64(" A A\nE= "), std::string("\0\1", 2));
    EXPECT_EQ(decodeBase64("AA = ="), std::string("\0", 1));
    EXPECT_EQ(decodeBase64("AA*E!C"), std::string("\0\1\2", 3));
    EXPECT_EQ(decodeBase64("AAECAA"), std::string("\0\1\2", 3));
    EXPECT_EQ(decodeBase64(""), "");
    EXPECT_EQ(decodeBase64("AAE\x80"), std::nullopt);
}

TEST(Base64, isWrittenInLinesThatShortenWithTheIndent) {
    for (std::size_t indent = 0; indent < 12; ++indent)
        for (std::size_t size = 0; size < 200; ++size) {
            std::string bytes(size, '\xA5');
            std::string text;
            appendBase64(text, bytes, indent);
            ASSERT_EQ(decodeBase64(text), bytes);
            if (text.empty())
                continue;
            ASSERT_LE(text.find('\n'),
                      std::min<std::size_t>(indent, 8) + 76 - 8 * std::min<std::size_t>(indent, 8));
        }
}

// Locales with a decimal comma, which the build makes (cmake/TestLocales.cmake).
class CommaLocale : public testing::TestWithParam<const char*> {};

TEST_P(CommaLocale, changesNothing) {
    setenv("LOCPATH", KORVEL_TEST_LOCALES, 1);
    ASSERT_NE(std::setlocale(LC_ALL, GetParam()), nullptr) << KORVEL_TEST_LOCALES;
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    const std::string xml =
        *writeXml(Value(Array{Value(1.5), Value(1234567.25), Value(std::int64_t{1234567})}));
    EXPECT_NE(xml.find("<real>1.5</real>"), std::string::npos);
    EXPECT_NE(xml.find("<real>1234567.25</real>"), std::string::npos);
    EXPECT_NE(xml.find("<integer>1234567</integer>"), std::string::npos);
    EXPECT_EQ(parseReal("1.5"), 1.5);
    EXPECT_EQ(parseReal("1,5"), std::nullopt);
    std::setlocale(LC_ALL, "C");
}

INSTANTIATE_TEST_SUITE_P(Numbers, CommaLocale, testing::Values("ru_RU.UTF-8", "de_DE.UTF-8"));

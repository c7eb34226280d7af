#include "platform/storage/SettingConversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

using platform::settingAsInteger;
using platform::settingAsText;
using platform::textOfReal;
using platform::plist::Array;
using platform::plist::Data;
using platform::plist::Date;
using platform::plist::Dictionary;
using platform::plist::Integer;
using platform::plist::Set;
using platform::plist::Uid;
using platform::plist::Value;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

struct Row {
    const char* name;
    Value value;
    std::int64_t integer;
    std::optional<std::string> text;
};

Value integer(std::int64_t number) {
    return Value(number);
}
Value large(std::uint64_t number) {
    return Value(Integer{number, true});
}

class SettingTableTest : public testing::TestWithParam<Row> {};

} // namespace

TEST_P(SettingTableTest, readsAsAnInteger) {
    EXPECT_EQ(settingAsInteger(GetParam().value), GetParam().integer);
}

TEST_P(SettingTableTest, readsAsText) {
    EXPECT_EQ(settingAsText(GetParam().value), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Integers, SettingTableTest,
    testing::Values(Row{"zero", integer(0), 0, "0"}, Row{"negative", integer(-42), -42, "-42"},
                    Row{"largest", integer(largest), largest, "9223372036854775807"},
                    Row{"smallest", integer(smallest), smallest, "-9223372036854775808"},
                    Row{"beyond", large(1ULL << 63), largest, "9223372036854775808"},
                    Row{"largestUnsigned", large(~0ULL), largest, "18446744073709551615"}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Reals, SettingTableTest,
    testing::Values(Row{"whole", Value(3.0), 3, "3"}, Row{"fraction", Value(3.7), 3, "3.7"},
                    Row{"negativeFraction", Value(-3.7), -3, "-3.7"},
                    Row{"belowOne", Value(0.9999), 0, "0.9999"}, Row{"zero", Value(0.0), 0, "0"},
                    Row{"negativeZero", Value(-0.0), 0, "-0"}, Row{"tenth", Value(0.1), 0, "0.1"},
                    Row{"third", Value(1.0 / 3), 0, "0.3333333333333333"},
                    Row{"date", Value(1773153000.25), 1773153000, "1773153000.25"},
                    Row{"twoTo63", Value(9223372036854775808.0), largest, "9.223372036854776e+18"},
                    Row{"minusTwoTo63", Value(-9223372036854775808.0), smallest, "-9.223372036854776e+18"},
                    Row{"huge", Value(1e300), largest, "1e+300"},
                    Row{"hugeNegative", Value(-1e300), smallest, "-1e+300"},
                    Row{"infinite", Value(infinite), largest, "inf"},
                    Row{"minusInfinite", Value(-infinite), smallest, "-inf"},
                    Row{"notANumber", Value(notANumber), 0, "nan"}, Row{"tiny", Value(5e-324), 0, "5e-324"}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(Booleans, SettingTableTest,
                         testing::Values(Row{"yes", Value(true), 1, "1"}, Row{"no", Value(false), 0, "0"}),
                         [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Texts, SettingTableTest,
    testing::Values(Row{"empty", Value(""), 0, ""}, Row{"number", Value("12"), 12, "12"},
                    Row{"negative", Value("-7"), -7, "-7"}, Row{"plus", Value("+5"), 5, "+5"},
                    Row{"leading", Value("12abc"), 12, "12abc"}, Row{"word", Value("abc"), 0, "abc"},
                    Row{"hexadecimal", Value("0x10"), 0, "0x10"}, Row{"real", Value("3.7"), 3, "3.7"},
                    Row{"exponent", Value("1e3"), 1, "1e3"}, Row{"leadingZeros", Value("007"), 7, "007"},
                    Row{"whiteSpace", Value(" \t\n\v\f\r12 "), 12, " \t\n\v\f\r12 "},
                    Row{"spaceAfterTheSign", Value("- 5"), 0, "- 5"}, Row{"twoSigns", Value("--5"), 0, "--5"},
                    Row{"plusMinus", Value("+-5"), 0, "+-5"}, Row{"minusPlus", Value("-+5"), 0, "-+5"},
                    Row{"signAlone", Value("-"), 0, "-"},
                    Row{"largest", Value("9223372036854775807"), largest, "9223372036854775807"},
                    Row{"beyond", Value("9223372036854775808"), largest, "9223372036854775808"},
                    Row{"smallest", Value("-9223372036854775808"), smallest, "-9223372036854775808"},
                    Row{"farBelow", Value("-99999999999999999999x"), smallest, "-99999999999999999999x"},
                    Row{"farBeyond", Value("  +99999999999999999999"), largest, "  +99999999999999999999"},
                    Row{"otherDigits", Value("١٢"), 0, "١٢"}, Row{"yes", Value("YES"), 0, "YES"}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OtherKinds, SettingTableTest,
    testing::Values(Row{"date", Value(Date{5}), 0, std::nullopt},
                    Row{"data", Value(Data{"12"}), 0, std::nullopt},
                    Row{"array", Value(Array{integer(12)}), 0, std::nullopt},
                    Row{"dictionary", Value(Dictionary{}), 0, std::nullopt},
                    Row{"null", Value(), 0, std::nullopt}, Row{"uid", Value(Uid{12}), 0, std::nullopt},
                    Row{"set", Value(Set{std::make_shared<const Array>()}), 0, std::nullopt}),
    [](const auto& row) { return row.param.name; });

TEST(TextOfRealTest, changesItsLayoutWherePrintfDoes) {
    EXPECT_EQ(textOfReal(0.0001), "0.0001");
    EXPECT_EQ(textOfReal(0.00001), "1e-05");
    EXPECT_EQ(textOfReal(1e16), "10000000000000000");
    EXPECT_EQ(textOfReal(1e17), "1e+17");
}

TEST(TextOfRealTest, readsBackAsTheSameReal) {
    std::mt19937_64 random(20260310);
    for (int i = 0; i < 20'000; ++i) {
        const std::uint64_t bits = random();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value))
            continue;
        ASSERT_EQ(std::strtod(textOfReal(value).c_str(), nullptr), value);
    }
}

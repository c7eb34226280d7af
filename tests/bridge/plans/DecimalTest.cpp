#include "bridge/plans/Decimal.h"

#include <gtest/gtest.h>

using bridge::Decimal;
using bridge::decimalOfFraction;
using bridge::decimalOfText;
using bridge::textOfDecimal;
using bridge::withPlaces;

namespace {

constexpr std::int64_t largest = 9223372036854775807;

} // namespace

TEST(Decimal, isReadFromText) {
    const std::pair<const char*, Decimal> cases[] = {{"0", {0, 0}},
                                                     {"-1200.00", {-120000, 2}},
                                                     {"12.5", {125, 1}},
                                                     {"+7", {7, 0}},
                                                     {"-42.420000000000002", {-42420000000000002, 15}},
                                                     {".5", {5, 1}},
                                                     {"5.", {5, 0}},
                                                     {"1e-05", {1, 5}},
                                                     {"1.5e+3", {1500, 0}},
                                                     {"-2.5E2", {-250, 0}},
                                                     {"9223372036854775807", {largest, 0}},
                                                     {"0.0000000000000000001", {0, 18}}};
    for (const auto& [text, number] : cases)
        EXPECT_EQ(decimalOfText(text), number) << text;
}

TEST(Decimal, isNothingWhereTheTextIsNoNumber) {
    for (const char* text : {"",
                             "-",
                             ".",
                             "-.",
                             "abc",
                             "1,5",
                             "1.2.3",
                             "1e",
                             "1e400",
                             "e5",
                             "--1",
                             "+-1",
                             "1 ",
                             " 1",
                             "0x10",
                             "nan",
                             "inf",
                             "9223372036854775808",
                             "-9223372036854775808",
                             "1e19"})
        EXPECT_FALSE(decimalOfText(text)) << text;
}

TEST(Decimal, isReadFromAFraction) {
    const std::pair<const char*, Decimal> cases[] = {{"-1999/100", {-1999, 2}},
                                                     {"-151/2", {-755, 1}},
                                                     {"-950/1", {-950, 0}},
                                                     {"7", {7, 0}},
                                                     {"1/4", {25, 2}},
                                                     {"1/8", {125, 3}},
                                                     {"0/100", {0, 2}},
                                                     {"95000/100", {95000, 2}},
                                                     {"1/1000000000000000000", {1, 18}}};
    for (const auto& [text, number] : cases)
        EXPECT_EQ(decimalOfFraction(text), number) << text;
}

TEST(Decimal, isNothingWhereAFractionHasNoDecimals) {
    for (const char* text : {"", "/", "1/", "/1", "1/0", "1/-2", "1/3", "1/7", "1/2/3", "a/b", "1.5/2",
                             "1/10000000000000000000", "9223372036854775807/2", "-9223372036854775808/1"})
        EXPECT_FALSE(decimalOfFraction(text)) << text;
}

TEST(Decimal, isRoundedHalfAwayFromZero) {
    EXPECT_EQ(withPlaces({-42420000000000002, 15}, 2), (Decimal{-4242, 2}));
    EXPECT_EQ(withPlaces({125, 2}, 1), (Decimal{13, 1}));
    EXPECT_EQ(withPlaces({-125, 2}, 1), (Decimal{-13, 1}));
    EXPECT_EQ(withPlaces({124, 2}, 1), (Decimal{12, 1}));
    EXPECT_EQ(withPlaces({149, 2}, 0), (Decimal{1, 0}));
    EXPECT_EQ(withPlaces({5, 0}, 2), (Decimal{500, 2}));
    EXPECT_EQ(withPlaces({largest, 18}, 0), (Decimal{9, 0}));
    EXPECT_FALSE(withPlaces({largest, 0}, 1)) << "no 64-bit units";
}

TEST(Decimal, isWrittenWithItsPlaces) {
    EXPECT_EQ(textOfDecimal({-120000, 2}), "-1200.00");
    EXPECT_EQ(textOfDecimal({-1, 2}), "-0.01");
    EXPECT_EQ(textOfDecimal({5, 0}), "5");
    EXPECT_EQ(textOfDecimal({0, 2}), "0.00");
    EXPECT_EQ(textOfDecimal({largest, 18}), "9.223372036854775807");
}

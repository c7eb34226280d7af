#include "bridge/sources/GnuCashFormula.h"

#include <gtest/gtest.h>

using bridge::Decimal;
using bridge::valueOfFormula;

TEST(GnuCashFormula, isCalculatedExactly) {
    const std::pair<const char*, Decimal> cases[] = {{"100.50 + 2 * 3", {10650, 2}},
                                                     {"(1 + 2) * -3", {-900, 2}},
                                                     {"10 / 3", {333, 2}},
                                                     {"10 / 3 * 3", {1000, 2}},
                                                     {"-2 / 3", {-67, 2}},
                                                     {"0.005", {1, 2}},
                                                     {"-0.005", {-1, 2}},
                                                     {"7", {700, 2}},
                                                     {"1,5", {150, 2}},
                                                     {"1,234.56", {123456, 2}},
                                                     {"1.234,56", {123456, 2}},
                                                     {"1,234.567", {123457, 2}},
                                                     {"1.0000", {100, 2}},
                                                     {"1234.567", {123457, 2}},
                                                     {".125", {13, 2}},
                                                     {" 1-1 ", {0, 2}},
                                                     {"0.1 + 0.2", {30, 2}}};
    for (const auto& [formula, value] : cases)
        EXPECT_EQ(valueOfFormula(formula, 2), value) << formula;
    EXPECT_EQ(valueOfFormula("1500", 0), (Decimal{1500, 0}));
    EXPECT_EQ(valueOfFormula("2.5", 0), (Decimal{3, 0}));
}

TEST(GnuCashFormula, isNothingWhereItHasNoOneValue) {
    for (const char* formula : {"",
                                " ",
                                "kwh * 0.3",
                                "1.234",
                                "1,234",
                                "1,234,567",
                                "1.2.3",
                                "1 2",
                                "1 +",
                                "+",
                                "(1",
                                "1)",
                                "()",
                                "1 / 0",
                                "1 / (1 - 1)",
                                "2 ** 3",
                                "1e5",
                                "1;2",
                                "9223372036854775808",
                                "9223372036854775807 * 9223372036854775807",
                                "9223372036854775807",
                                ".",
                                "1 $",
                                "0x10"})
        EXPECT_FALSE(valueOfFormula(formula, 2)) << formula;
    EXPECT_FALSE(valueOfFormula(std::string_view("1\0", 2), 2)) << "NUL";
    EXPECT_FALSE(valueOfFormula(std::string(100'000, '('), 2)) << "nested too deep";
    EXPECT_FALSE(valueOfFormula(std::string(100'000, '-') + "1", 2)) << "nested too deep";
}

#include "bridge/AmountText.h"

#include "bridge/BridgeTest.h"

#include <gtest/gtest.h>

namespace bridge {

namespace {

std::string text(const char* number, const char* currency, Direction direction, const char* locale) {
    Plan plan;
    plan.amount = Amount{decimalOfText(number).value(), currency};
    plan.direction = direction;
    return amountText(plan, locale);
}

} // namespace

TEST(AmountText, isThatOfTheLocaleAndTheCurrency) {
    const struct {
        const char* number;
        const char* currency;
        Direction direction;
        const char* locale;
        const char* text;
    } rows[] = {
        {"-870.00", "EUR", Direction::Expense, "en_US", "−€870.00"},
        {"2480.00", "EUR", Direction::Income, "en_US", "+€2,480.00"},
        {"-12.50", "EUR", Direction::Transfer, "en_US", "€12.50"},
        {"-870.00", "EUR", Direction::Expense, "de_DE", "−870,00\u00a0€"},
        {"2480.00", "EUR", Direction::Income, "fr_FR", "+2\u202f480,00\u00a0€"},
        {"-1200", "JPY", Direction::Expense, "ja_JP", "−￥1,200"},
        {"-1200", "JPY", Direction::Expense, "en_US", "−¥1,200"},
        // the decimals of the currency at least, and all of the number
        {"-5", "EUR", Direction::Expense, "en_US", "−€5.00"},
        {"-0.005", "EUR", Direction::Expense, "en_US", "−€0.005"},
        {"-1.5", "KWD", Direction::Expense, "en_US", "−KWD\u00a01.500"},
        // beyond what a double holds
        {"-9007199254740993.01", "EUR", Direction::Expense, "en_US", "−€9,007,199,254,740,993.01"},
        // the sign is the direction's
        {"870.00", "EUR", Direction::Expense, "en_US", "−€870.00"},
        {"-3.00", "EUR", Direction::Income, "en_US", "+€3.00"},
        {"0.00", "EUR", Direction::Expense, "en_US", "€0.00"},
        // what is no currency of ISO 4217
        {"-5.25", "$", Direction::Expense, "en_US", "−$5.25"},
        {"-5.25", "$", Direction::Expense, "de_DE", "−5,25\u00a0$"},
        {"3", "hours", Direction::Income, "en_US", "+hours\u00a03"},
        {"3", "QQQ", Direction::Income, "de_DE", "+3\u00a0QQQ"},
        {"-5.25", "", Direction::Expense, "de_DE", "−5,25"},
        {"-5.25", "", Direction::Expense, "en_US_POSIX", "−5.25"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(text(row.number, row.currency, row.direction, row.locale), row.text)
            << row.number << ' ' << row.currency << ' ' << row.locale;
}

TEST(AmountText, isEmptyWithoutAnAmount) {
    Plan plan = planOf("1", {});
    plan.amount.reset();
    EXPECT_EQ(amountText(plan, "en_US"), "");
}

TEST(AmountText, isInTheLocaleOfMoney) {
    const support::EnvironmentVariable all("LC_ALL", nullptr);
    const support::EnvironmentVariable money("LC_MONETARY", "de_AT.UTF-8");
    const support::EnvironmentVariable lang("LANG", "fr_FR.UTF-8");
    EXPECT_EQ(amountLocale(), "de_AT");
    money.set("");
    EXPECT_EQ(amountLocale(), "fr_FR");
    all.set("C");
    EXPECT_EQ(amountLocale(), "en_US_POSIX");
}

} // namespace bridge

#include "exchange/ExchangeTest.h"
#include "exchange/FeedReader.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/plist/Writer.h"

#include <csignal>
#include <limits>

namespace exchange {
namespace {

using What = FeedFault::What;

// Every way in which one record of a feed can break the feed's layout.
struct Row {
    const char* name;
    plist::Value record;
    FeedFault fault; // of the record at index 1
};

FeedFault missing(std::string_view key) {
    return {What::Missing, 1, key};
}

plist::Value lacking(const std::string& key) {
    return without(recordOf("p", tenthOfMarch), key);
}

plist::Value having(const std::string& key, plist::Value value) {
    return with(recordOf("p", tenthOfMarch), key, std::move(value));
}

const plist::Value text("text");
const plist::Value integer(std::int64_t(1));
const plist::Value data(plist::Data{"x"});
const plist::Value array(plist::Array{});
const plist::Value dictionary{plist::Dictionary()};
const plist::Value date(plist::Date{0});

class FeedDeathTest : public ExchangeTest, public testing::WithParamInterface<Row> {};

TEST_P(FeedDeathTest, endsTheProcess) {
    writeFeed({plist::Value(recordOf("good", tenthOfMarch)), GetParam().record});
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_P(FeedDeathTest, isNamedByTheReader) {
    const plist::Array records{plist::Value(recordOf("good", tenthOfMarch)), GetParam().record};
    const std::string bytes = plist::writeXml(plist::Value(records)).value();
    const FeedReading reading = transactionsOfFeed(bytes, tenthOfMarch);
    ASSERT_TRUE(std::holds_alternative<FeedFault>(reading));
    EXPECT_EQ(std::get<FeedFault>(reading), GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(Missing, FeedDeathTest,
                         testing::Values(Row{"Date", lacking("date"), missing("date")},
                                         Row{"Name", lacking("name"), missing("name")},
                                         Row{"Image", lacking("image"), missing("image")},
                                         Row{"Amount", lacking("amount"), missing("amount")},
                                         Row{"Income", lacking("income"), missing("income")},
                                         Row{"Expense", lacking("expense"), missing("expense")},
                                         Row{"Planpk", lacking("planpk"), missing("planpk")},
                                         Row{"Single", lacking("single"), missing("single")}),
                         [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(NoDictionary, FeedDeathTest,
                         testing::Values(Row{"String", text, {What::NotADictionary, 1, {}}},
                                         Row{"Integer", integer, {What::NotADictionary, 1, {}}},
                                         Row{"Array", array, {What::NotADictionary, 1, {}}},
                                         Row{"EmptyDictionary", dictionary, missing("date")}),
                         [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OtherKind, FeedDeathTest,
    testing::Values(
        Row{"DateIsText", having("date", text), {What::NotANumber, 1, "date"}},
        Row{"DateIsADate", having("date", date), {What::NotANumber, 1, "date"}},
        Row{"DateIsData", having("date", data), {What::NotANumber, 1, "date"}},
        Row{"NameIsANumber", having("name", integer), {What::NotAString, 1, "name"}},
        Row{"NameIsData", having("name", data), {What::NotAString, 1, "name"}},
        Row{"ImageIsABoolean", having("image", plist::Value(true)), {What::NotAString, 1, "image"}},
        Row{"AmountIsAReal", having("amount", plist::Value(9.5)), {What::NotAString, 1, "amount"}},
        Row{"IncomeIsText", having("income", plist::Value("true")), {What::NotATruthValue, 1, "income"}},
        Row{"ExpenseIsAnArray", having("expense", array), {What::NotATruthValue, 1, "expense"}},
        Row{"PlanpkIsANumber", having("planpk", integer), {What::NotAString, 1, "planpk"}},
        Row{"SingleIsADictionary", having("single", dictionary), {What::NotATruthValue, 1, "single"}},
        Row{"SingleIsADate", having("single", date), {What::NotATruthValue, 1, "single"}}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    FirstOfSeveral, FeedDeathTest,
    testing::Values(
        Row{"DateBeforeName", without(*lacking("name").dictionary(), "date"), missing("date")},
        Row{"NameBeforeImage", without(*lacking("image").dictionary(), "name"), missing("name")},
        Row{"ImageBeforeAmount", without(*lacking("amount").dictionary(), "image"), missing("image")},
        Row{"AmountBeforeIncome", without(*lacking("income").dictionary(), "amount"), missing("amount")},
        Row{"IncomeBeforeExpense", without(*lacking("expense").dictionary(), "income"), missing("income")},
        Row{"ExpenseBeforePlanpk", without(*lacking("planpk").dictionary(), "expense"), missing("expense")},
        Row{"PlanpkBeforeSingle", without(*lacking("single").dictionary(), "planpk"), missing("planpk")}),
    [](const auto& row) { return row.param.name; });

class FeedSettingsDeathTest : public ExchangeTest {};

TEST_F(FeedSettingsDeathTest, endsOverADayCountThatOverflows) {
    setSettings({{"notification_days_count", plist::Value(std::numeric_limits<std::int64_t>::max())}});
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(FeedSettingsDeathTest, endsOverADayCountThatIsClampedToTheLargest) {
    setSettings({{"notification_days_count", plist::Value("99999999999999999999")}});
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(FeedSettingsDeathTest, endsWhereTheCalendarYieldsNoDate) {
    clock.set(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

} // namespace
} // namespace exchange

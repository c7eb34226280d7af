#include "exchange/FeedRecord.h"
#include "exchange/ExchangeTest.h"

namespace exchange {
namespace {

using What = FeedFault::What;

TEST(FeedRecordTest, looksAtNothingThatIsNotAskedFor) {
    const plist::Value element = with(plist::Dictionary(), "date", plist::Value(1.5));
    FeedRecord record(element, 0);
    EXPECT_EQ(record.number(feed::date), 1.5);
    EXPECT_FALSE(record.fault());
}

TEST(FeedRecordTest, keepsTheFirstFault) {
    const plist::Value element = with(plist::Dictionary(), "date", plist::Value("soon"));
    FeedRecord record(element, 4);
    EXPECT_EQ(record.number(feed::date), 0);
    EXPECT_TRUE(record.text(feed::name).isEmpty());
    EXPECT_EQ(record.fault(), (FeedFault{What::NotANumber, 4, "date"}));
}

TEST(FeedRecordTest, givesEmptyValuesWhereThereIsNoDictionary) {
    const plist::Value element(std::int64_t(1));
    FeedRecord record(element, 2);
    EXPECT_EQ(record.number(feed::date), 0);
    EXPECT_FALSE(record.truth(feed::single));
    EXPECT_EQ(record.string(feed::planpk), "");
    EXPECT_EQ(record.fault(), (FeedFault{What::NotADictionary, 2, {}}));
}

struct Words {
    const char* name;
    FeedFault fault;
    const char* sentence;
};

class FeedFaultTable : public testing::TestWithParam<Words> {};

TEST_P(FeedFaultTable, isSaidInASentence) {
    EXPECT_EQ(describe(GetParam().fault), GetParam().sentence);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, FeedFaultTable,
    testing::Values(Words{"NotADictionary", {What::NotADictionary, 0, {}}, "record 1 is not a dictionary"},
                    Words{"Missing", {What::Missing, 2, "amount"}, "record 3: \"amount\" is missing"},
                    Words{"NotANumber", {What::NotANumber, 9, "date"}, "record 10: \"date\" is not a number"},
                    Words{"NotAString", {What::NotAString, 0, "name"}, "record 1: \"name\" is not a string"},
                    Words{"NotATruthValue",
                          {What::NotATruthValue, 0, "single"},
                          "record 1: \"single\" is neither a boolean nor a number"},
                    Words{"DayCountOverflow",
                          {What::DayCountOverflow, 0, {}},
                          "the setting \"notification_days_count\" is too large"},
                    Words{"NoDate", {What::NoDate, 0, {}}, "the calendar yields no date"},
                    Words{"Unreadable", {What::Unreadable, 0, {}}, "no array of records can be read"}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace exchange

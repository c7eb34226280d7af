#include "exchange/FeedRecord.h"

#include "exchange/ExchangeTest.h"
#include "platform/plist/RecordReader.h"

#include <functional>

namespace exchange {
namespace {

using What = FeedFault::What;

// Looks at the one record of an array.
void lookAtOne(const std::string& element, const std::function<void(FeedRecord&)>& look, std::size_t index) {
    const std::string feed = arrayFile(element);
    plist::RecordReader reader(feed, feedKeys);
    const plist::Record* const record = reader.next();
    ASSERT_NE(record, nullptr);
    FeedRecord feedRecord(*record, index);
    look(feedRecord);
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_TRUE(reader.isSound());
}

TEST(FeedRecordTest, looksAtNothingThatIsNotAskedFor) {
    lookAtOne(
        "<dict><key>date</key><real>1.5</real><key>name</key><true/></dict>",
        [](FeedRecord& record) {
            EXPECT_EQ(record.number(FeedKey::Date), 1.5);
            EXPECT_FALSE(record.fault());
        },
        0);
}

TEST(FeedRecordTest, keepsTheFirstFault) {
    lookAtOne(
        "<dict><key>date</key><string>soon</string></dict>",
        [](FeedRecord& record) {
            EXPECT_EQ(record.number(FeedKey::Date), 0);
            EXPECT_TRUE(record.text(FeedKey::Name).isEmpty());
            EXPECT_EQ(record.fault(), (FeedFault{What::NotANumber, 4, "date"}));
        },
        4);
}

TEST(FeedRecordTest, givesEmptyValuesWhereThereIsNoDictionary) {
    lookAtOne(
        "<integer>1</integer>",
        [](FeedRecord& record) {
            EXPECT_EQ(record.number(FeedKey::Date), 0);
            EXPECT_FALSE(record.truth(FeedKey::Single));
            EXPECT_EQ(record.string(FeedKey::Planpk), "");
            EXPECT_EQ(record.fault(), (FeedFault{What::NotADictionary, 2, {}}));
        },
        2);
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

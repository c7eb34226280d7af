#include "exchange/ExchangeTest.h"
#include "exchange/TodayWidgetLogic.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <limits>

namespace exchange {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// The plan keys of what the feed shows, in its order.
std::vector<std::string> shownPlans() {
    std::vector<std::string> plans;
    for (const TodayTransactionPtr& transaction : TodayWidgetLogic::getTodayTransactionsArray())
        plans.push_back(transaction->planPrimaryKey.toStdString());
    return plans;
}

plist::Value plain(const std::string& planKey, double date) {
    return plist::Value(recordOf(planKey, date));
}

class FeedTest : public ExchangeTest {};

TEST_F(FeedTest, readsEveryFieldOfARecord) {
    write("notifications.xml",
          arrayFile("<dict><key>date</key><real>1773165600.125</real><key>name</key><string>Café</string>"
                    "<key>image</key><string>cup</string><key>amount</key><string>4,50 €</string>"
                    "<key>income</key><false/><key>expense</key><true/><key>planpk</key><string>p-1</string>"
                    "<key>single</key><true/></dict>"));
    const std::vector<TodayTransactionPtr> transactions = TodayWidgetLogic::getTodayTransactionsArray();
    ASSERT_EQ(transactions.size(), 1u);
    EXPECT_EQ(transactions[0]->name, QString::fromUtf8("Café"));
    EXPECT_EQ(transactions[0]->date, 1773165600.125);
    EXPECT_EQ(transactions[0]->imageName, QStringLiteral("cup"));
    EXPECT_EQ(transactions[0]->amount, QString::fromUtf8("4,50 €"));
    EXPECT_FALSE(transactions[0]->isIncome);
    EXPECT_TRUE(transactions[0]->isExpense);
    EXPECT_EQ(transactions[0]->planPrimaryKey, QStringLiteral("p-1"));
    EXPECT_TRUE(transactions[0]->isSinglePlan);
    EXPECT_EQ(transactions[0]->index, 0);
}

TEST_F(FeedTest, numbersNothingAndMakesANewListEachTime) {
    writeFeed({plain("a", tenthOfMarch), plain("b", tenthOfMarch + 1)});
    const auto first = TodayWidgetLogic::getTodayTransactionsArray();
    const auto second = TodayWidgetLogic::getTodayTransactionsArray();
    ASSERT_EQ(first.size(), 2u);
    ASSERT_EQ(second.size(), 2u);
    EXPECT_EQ(first[1]->index, 0);
    EXPECT_NE(first[0], second[0]);
}

TEST_F(FeedTest, seesWhatTheHostHasWrittenSinceTheLastCall) {
    writeFeed({plain("a", tenthOfMarch)});
    EXPECT_THAT(shownPlans(), ElementsAre("a"));
    writeFeed({plain("b", tenthOfMarch)});
    EXPECT_THAT(shownPlans(), ElementsAre("b"));
}

// --- the range of days

TEST_F(FeedTest, endsWithTodayWhereNoDayCountIsSet) {
    writeFeed(
        {plain("last second of today", utc(2026, 3, 10, 23, 59, 59)), plain("tomorrow", utc(2026, 3, 11))});
    EXPECT_THAT(shownPlans(), ElementsAre("last second of today"));
    breakSettings();
    EXPECT_THAT(shownPlans(), ElementsAre("last second of today")) << "settings that cannot be opened";
}

TEST_F(FeedTest, leavesOutWhatFallsIntoTheLastHalfSecondOfTheDay) {
    writeFeed({plain("past the limit", utc(2026, 3, 10, 23, 59, 59) + 0.5)});
    EXPECT_THAT(shownPlans(), IsEmpty());
}

TEST_F(FeedTest, showsTwoDaysAhead) {
    setSettings({{"notification_days_count", plist::Value(std::int64_t(2))}});
    writeFeed({plain("in time", utc(2026, 3, 12, 23, 59, 59)), plain("too late", utc(2026, 3, 13))});
    EXPECT_THAT(shownPlans(), ElementsAre("in time"));
}

TEST_F(FeedTest, hidesTodayOnTheLastDayOfAMonth) {
    clock.set(utc(2026, 1, 31, 9));
    writeFeed({plain("today", utc(2026, 1, 31, 8)), plain("this month", utc(2026, 1, 1)),
               plain("last year", utc(2025, 12, 31, 23, 59, 59))});
    EXPECT_THAT(shownPlans(), ElementsAre("last year"));
}

TEST_F(FeedTest, showsWhatIsFiveYearsOverdue) {
    writeFeed({plain("old", utc(2021, 3, 10))});
    const auto transactions = TodayWidgetLogic::getTodayTransactionsArray();
    ASSERT_EQ(transactions.size(), 1u);
    EXPECT_TRUE(transactions[0]->isOverdue());
}

TEST_F(FeedTest, showsOnlyWhatWasDueBeforeTodayForACountOfMinusOne) {
    setSettings({{"notification_days_count", plist::Value(std::int64_t(-1))}});
    writeFeed({plain("yesterday", utc(2026, 3, 9, 23, 59, 59)), plain("today", utc(2026, 3, 10))});
    EXPECT_THAT(shownPlans(), ElementsAre("yesterday"));
}

struct DayCountRow {
    const char* name;
    plist::Value setting;
    std::size_t days; // today counts as one
};

class DayCountTable : public ExchangeTest, public testing::WithParamInterface<DayCountRow> {};

TEST_P(DayCountTable, isReadAsAnInteger) {
    setSettings({{"notification_days_count", GetParam().setting}});
    std::vector<plist::Value> records;
    for (int ahead = 0; ahead < 8; ++ahead)
        records.push_back(plain("p", tenthOfMarch + ahead * day));
    writeFeed(records);
    EXPECT_EQ(shownPlans().size(), GetParam().days);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DayCountTable,
    testing::Values(DayCountRow{"Integer", plist::Value(std::int64_t(3)), 4},
                    DayCountRow{"RealIsTruncated", plist::Value(3.7), 4},
                    DayCountRow{"NegativeRealIsTruncatedTowardsZero", plist::Value(-0.7), 1},
                    DayCountRow{"True", plist::Value(true), 2}, DayCountRow{"False", plist::Value(false), 1},
                    DayCountRow{"Text", plist::Value("5"), 6},
                    DayCountRow{"TextWithALeadingInteger", plist::Value("2 days"), 3},
                    DayCountRow{"HexadecimalTextIsZero", plist::Value("0x5"), 1},
                    DayCountRow{"OtherTextIsZero", plist::Value("week"), 1},
                    DayCountRow{"NaNIsZero", plist::Value(nan), 1},
                    DayCountRow{"DataIsZero", plist::Value(plist::Data{"5"}), 1},
                    DayCountRow{"DateIsZero", plist::Value(plist::Date{5}), 1},
                    DayCountRow{"ArrayIsZero", plist::Value(plist::Array{plist::Value(5.0)}), 1},
                    DayCountRow{"DictionaryIsZero", plist::Value(plist::Dictionary()), 1}),
    [](const auto& row) { return row.param.name; });

// --- order

TEST_F(FeedTest, sortsByDate) {
    writeFeed(
        {plain("c", tenthOfMarch + 2), plain("a", -5), plain("d", tenthOfMarch + 2.001), plain("b", 0.5)});
    EXPECT_THAT(shownPlans(), ElementsAre("a", "b", "c", "d"));
}

TEST_F(FeedTest, showsBothOfTwoRecordsWithTheSameDate) {
    writeFeed({plain("a", tenthOfMarch), plain("b", tenthOfMarch)});
    EXPECT_THAT(shownPlans(), testing::UnorderedElementsAre("a", "b"));
}

TEST_F(FeedTest, putsAMissingDateLastAndSkipsTheEndOfTime) {
    writeFeed({plain("nan", nan), plain("b", tenthOfMarch), plain("end of time", infinity),
               plain("other nan", -nan), plain("a", -infinity)});
    EXPECT_THAT(shownPlans(), ElementsAre("a", "b", "nan", "other nan"));
}

TEST_F(FeedTest, reachesTheLimitThatIsFarAwayInALargeFeed) {
    std::vector<plist::Value> records;
    for (int i = 0; i < 10000; ++i)
        records.push_back(plain(std::to_string(i), tenthOfMarch - i));
    writeFeed(records);
    const auto transactions = TodayWidgetLogic::getTodayTransactionsArray();
    ASSERT_EQ(transactions.size(), 10000u);
    EXPECT_EQ(transactions.front()->planPrimaryKey, QStringLiteral("9999"));
    EXPECT_EQ(transactions.back()->planPrimaryKey, QStringLiteral("0"));
}

// --- kinds of values

TEST_F(FeedTest, takesAnyNumberForADate) {
    const plist::Dictionary record = recordOf("p", 0);
    writeFeed({with(record, "date", plist::Value(std::int64_t(1773100800))),
               with(record, "date", plist::Value(true)), with(record, "date", plist::Value(0.5))});
    const auto transactions = TodayWidgetLogic::getTodayTransactionsArray();
    ASSERT_EQ(transactions.size(), 3u);
    EXPECT_EQ(transactions[0]->date, 0.5);
    EXPECT_EQ(transactions[1]->date, 1);
    EXPECT_EQ(transactions[2]->date, 1773100800);
}

TEST_F(FeedTest, takesANumberForATruthValue) {
    plist::Dictionary record = recordOf("p", 0);
    record.set("income", plist::Value(std::int64_t(-7)));
    record.set("expense", plist::Value(0.0));
    record.set("single", plist::Value(0.001));
    writeFeed({plist::Value(record)});
    const auto transactions = TodayWidgetLogic::getTodayTransactionsArray();
    ASSERT_EQ(transactions.size(), 1u);
    EXPECT_TRUE(transactions[0]->isIncome);
    EXPECT_FALSE(transactions[0]->isExpense);
    EXPECT_TRUE(transactions[0]->isSinglePlan);
}

TEST_F(FeedTest, ignoresFurtherKeysWhateverTheyHold) {
    plist::Dictionary record = recordOf("p", 0);
    record.set("note", plist::Value(plist::Array{plist::Value(plist::Data{"x"})}));
    record.set("Name", plist::Value(plist::Date{0}));
    writeFeed({plist::Value(record)});
    EXPECT_THAT(shownPlans(), ElementsAre("p"));
}

TEST_F(FeedTest, keepsLineBreaksAndAMegabyteOfAName) {
    const std::string name = "two\nlines " + std::string(1 << 20, 'x');
    writeFeed({with(recordOf("p", 0), "name", plist::Value(name))});
    const auto transactions = TodayWidgetLogic::getTodayTransactionsArray();
    ASSERT_EQ(transactions.size(), 1u);
    EXPECT_EQ(transactions[0]->name.toStdString(), name);
}

// --- nothing past the limit is looked at but the date

TEST_F(FeedTest, doesNotLookAtARecordPastTheLimit) {
    plist::Dictionary bare;
    bare.set("date", plist::Value(utc(2026, 3, 11)));
    bare.set("name", plist::Value(std::int64_t(1)));
    writeFeed({plist::Value(bare), plain("p", tenthOfMarch)});
    EXPECT_THAT(shownPlans(), ElementsAre("p"));
}

// --- soft failures

TEST_F(FeedTest, isEmptyWithoutAContainer) {
    removeContainer();
    EXPECT_THAT(shownPlans(), IsEmpty());
}

TEST_F(FeedTest, isEmptyWithoutAContainerEvenWhereTheDayCountWouldBeFatal) {
    removeContainer();
    clock.set(nan);
    EXPECT_THAT(shownPlans(), IsEmpty());
}

TEST_F(FeedTest, isEmptyWithoutAFile) {
    EXPECT_THAT(shownPlans(), IsEmpty());
}

TEST_F(FeedTest, isEmptyWhereAFolderStandsInTheFilesPlace) {
    makeFolder("notifications.xml");
    EXPECT_THAT(shownPlans(), IsEmpty());
}

struct ContentRow {
    const char* name;
    std::string bytes;
};

class UnusableFeedTable : public ExchangeTest, public testing::WithParamInterface<ContentRow> {};

TEST_P(UnusableFeedTable, isEmpty) {
    write("notifications.xml", GetParam().bytes);
    EXPECT_THAT(shownPlans(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Contents, UnusableFeedTable,
    testing::Values(ContentRow{"EmptyArray", arrayFile("")}, ContentRow{"NoBytes", ""},
                    ContentRow{"RootIsADictionary", "<plist version=\"1.0\"><dict/></plist>"},
                    ContentRow{"RootIsAString", "<plist version=\"1.0\"><string>feed</string></plist>"},
                    ContentRow{"Garbage", "\x01\x02\xFF garbage <"},
                    ContentRow{"CutOff", "<plist version=\"1.0\"><array><dict><key>date</key><real>1</re"},
                    // Were the faulty record looked at before the whole file was, this would be fatal.
                    ContentRow{"CutOffAfterAFaultyRecord", "<plist version=\"1.0\"><array><dict/><string>"},
                    ContentRow{"FaultyRecordInABrokenFile", "<plist version=\"1.0\"><array><true/></plist>"}),
    [](const auto& row) { return row.param.name; });

// --- the forms of a property list

TEST_F(FeedTest, readsTheBinaryFormAndUtf16) {
    for (const char* form : {"feed-binary.plist", "feed-utf16.xml"}) {
        std::filesystem::copy_file(std::string(KORVEL_TEST_DATA) + "/exchange/" + form,
                                   path("notifications.xml"),
                                   std::filesystem::copy_options::overwrite_existing);
        const auto transactions = TodayWidgetLogic::getTodayTransactionsArray();
        ASSERT_EQ(transactions.size(), 2u) << form;
        EXPECT_EQ(transactions[0]->name.toStdString(), "Проезд") << form;
        EXPECT_EQ(transactions[0]->date, 1773072000.25) << form;
        EXPECT_EQ(transactions[1]->name.toStdString(), "Rent") << form;
        EXPECT_EQ(transactions[1]->date, 1773100800) << form;
        EXPECT_TRUE(transactions[1]->isSinglePlan) << form;
    }
}

} // namespace
} // namespace exchange

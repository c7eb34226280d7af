#include "exchange/ExchangeTest.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/plist/Writer.h"
#include "support/RegionOverride.h"

#include <csignal>
#include <limits>

namespace exchange {
namespace {

using Action = TodayTransactionAction;

// One record of the log, as it stands in the file.
std::string logged(int type, const std::string& planKey, const std::string& date,
                   const std::string& parameter) {
    return "\t<dict>\n"
           "\t\t<key>date</key>\n\t\t<real>" +
           date +
           "</real>\n"
           "\t\t<key>param</key>\n\t\t<integer>" +
           parameter +
           "</integer>\n"
           "\t\t<key>pk</key>\n\t\t<string>" +
           planKey +
           "</string>\n"
           "\t\t<key>type</key>\n\t\t<integer>" +
           std::to_string(type) +
           "</integer>\n"
           "\t</dict>\n";
}

// One record of the feed as it stands in the file: recordOf's, with further keys (before "amount" in the
// order of keys) in front.
std::string fed(const std::string& planKey, const std::string& date, const std::string& further = {}) {
    return "\t<dict>\n" + further +
           "\t\t<key>amount</key>\n\t\t<string>$ 900</string>\n"
           "\t\t<key>date</key>\n\t\t<real>" +
           date +
           "</real>\n"
           "\t\t<key>expense</key>\n\t\t<true/>\n"
           "\t\t<key>image</key>\n\t\t<string>house</string>\n"
           "\t\t<key>income</key>\n\t\t<false/>\n"
           "\t\t<key>name</key>\n\t\t<string>Rent</string>\n"
           "\t\t<key>planpk</key>\n\t\t<string>" +
           planKey +
           "</string>\n"
           "\t\t<key>single</key>\n\t\t<false/>\n"
           "\t</dict>\n";
}

class ActionsTest : public ExchangeTest {
protected:
    static void perform(Action action, const std::string& planKey, double date) {
        TodayWidgetLogic::performTransactionAction(transactionOf(planKey, date), action, nullptr);
    }
};

// Four weekly occurrences of a plan, and one of another plan among them.
const std::string weekly = fed("plan", "1773100800") + fed("plan", "1773705600") +
                           fed("other", "1773705600") + fed("plan", "1774310400") + fed("plan", "1774915200");
constexpr double secondWeek = 1773705600;

TEST_F(ActionsTest, paidLosesTheOneOccurrence) {
    write("notifications.xml", arrayFile(weekly));
    perform(Action::Paid(), "plan", secondWeek);
    EXPECT_EQ(log(), arrayFile(logged(1, "plan", "1773705600", "0")));
    EXPECT_EQ(feed(), arrayFile(fed("plan", "1773100800") + fed("other", "1773705600") +
                                fed("plan", "1774310400") + fed("plan", "1774915200")));
}

TEST_F(ActionsTest, deleteWithTheFutureKeepsWhatIsEarlier) {
    write("notifications.xml", arrayFile(weekly));
    perform(Action::Delete(true), "plan", secondWeek);
    EXPECT_EQ(log(), arrayFile(logged(3, "plan", "1773705600", "1")));
    EXPECT_EQ(feed(), arrayFile(fed("plan", "1773100800") + fed("other", "1773705600")));
}

TEST_F(ActionsTest, deleteWithTheFutureDropsLaterRecordsThatStandBefore) {
    write("notifications.xml",
          arrayFile(fed("plan", "30") + fed("plan", "10") + fed("plan", "20.001") + fed("plan", "20")));
    perform(Action::Delete(true), "plan", 20);
    EXPECT_EQ(feed(), arrayFile(fed("plan", "10")));
}

TEST_F(ActionsTest, deleteWithoutTheFutureLosesTheOneOccurrence) {
    write("notifications.xml", arrayFile(weekly));
    perform(Action::Delete(false), "plan", secondWeek);
    EXPECT_EQ(log(), arrayFile(logged(3, "plan", "1773705600", "0")));
    EXPECT_EQ(feed(), arrayFile(fed("plan", "1773100800") + fed("other", "1773705600") +
                                fed("plan", "1774310400") + fed("plan", "1774915200")));
}

TEST_F(ActionsTest, laterMovesTheOccurrenceAtItsPlaceAndLogsTheOldDate) {
    const std::string note = "\t\t<key>_note</key>\n\t\t<data>\n\t\teA==\n\t\t</data>\n";
    write("notifications.xml", arrayFile(fed("plan", "1773100800") + fed("plan", "1773705600.5", note) +
                                         fed("plan", "1774310400")));
    perform(Action::Later(2), "plan", 1773705600.5);
    EXPECT_EQ(log(), arrayFile(logged(2, "plan", "1773705600.5", "2")));
    // 12 March 2026 00:00
    EXPECT_EQ(feed(), arrayFile(fed("plan", "1773100800") + fed("plan", "1773273600", note) +
                                fed("plan", "1774310400")));
}

TEST_F(ActionsTest, laterTodayMovesToTheStartOfToday) {
    write("notifications.xml", arrayFile(fed("plan", "1773146700")));
    perform(Action::Later(0), "plan", 1773146700);
    EXPECT_EQ(log(), arrayFile(logged(2, "plan", "1773146700", "0")));
    EXPECT_EQ(feed(), arrayFile(fed("plan", "1773100800")));
}

TEST_F(ActionsTest, laterCountsFromTodayAndNotFromTheOccurrence) {
    write("notifications.xml", arrayFile(fed("plan", "1772496000"))); // 3 March
    perform(Action::Later(1), "plan", 1772496000);
    EXPECT_EQ(feed(), arrayFile(fed("plan", "1773187200"))); // 11 March
}

TEST_F(ActionsTest, laterMovesAnIntegerDateToAReal) {
    write("notifications.xml", arrayFile("<dict><key>planpk</key><string>plan</string>"
                                         "<key>date</key><integer>1773146700</integer></dict>"));
    perform(Action::Later(0), "plan", 1773146700);
    EXPECT_EQ(feed(), arrayFile("<dict><key>planpk</key><string>plan</string>"
                                "<key>date</key><real>1773100800</real></dict>"));
}

// --- the days that Later can name

struct LaterRow {
    const char* name;
    platform::Region region;
    double now;
    std::int64_t days;
    double moved;
};

class LaterTable : public ExchangeTest, public testing::WithParamInterface<LaterRow> {};

TEST_P(LaterTable, movesToTheStartOfTheDay) {
    region.reset();
    const support::RegionOverride here(GetParam().region);
    clock.set(GetParam().now);
    writeFeed({plist::Value(recordOf("plan", 0.5))});
    TodayWidgetLogic::performTransactionAction(transactionOf("plan", 0.5), Action::Later(GetParam().days),
                                               nullptr);
    const plist::Array moved{plist::Value(recordOf("plan", GetParam().moved))};
    EXPECT_EQ(feed(), plist::writeXml(plist::Value(moved)));
}

const platform::Region utcZone{"en_US", "UTC"};

INSTANTIATE_TEST_SUITE_P(
    Days, LaterTable,
    testing::Values(
        LaterRow{"WithinTheMonth", utcZone, utc(2026, 3, 10, 15), 2, utc(2026, 3, 12)},
        LaterRow{"TomorrowOnTheLastOfJanuary", utcZone, utc(2026, 1, 31, 15), 1, utc(2026, 1, 1)},
        LaterRow{"TomorrowOnTheLastOfFebruary", utcZone, utc(2026, 2, 28, 15), 1, utc(2026, 2, 1)},
        LaterRow{"ThreeDaysOnTheLastButOneOfApril", utcZone, utc(2026, 4, 29, 15), 3, utc(2026, 4, 2)},
        LaterRow{"AWeekOnTheLastOfALeapFebruary", utcZone, utc(2028, 2, 29, 15), 7, utc(2028, 2, 7)},
        LaterRow{"BackFromTheFirst", utcZone, utc(2026, 3, 1, 15), -1, utc(2026, 3, 31)},
        LaterRow{"MostDays", utcZone, utc(2026, 3, 10, 15), std::numeric_limits<std::int64_t>::max(),
                 utc(2026, 3, 17)},
        LaterRow{"MidnightMissingInSaoPaulo",
                 {"pt_BR", "America/Sao_Paulo"},
                 utc(2018, 11, 3, 15),
                 1,
                 utc(2018, 11, 4, 3)},
        LaterRow{"MidnightMissingInBeirut",
                 {"ar_LB", "Asia/Beirut"},
                 utc(2023, 3, 25, 12),
                 1,
                 utc(2023, 3, 25, 22)},
        LaterRow{"MidnightTwiceInHavana",
                 {"es_CU", "America/Havana"},
                 utc(2024, 11, 1, 16),
                 2,
                 utc(2024, 11, 3, 4)},
        LaterRow{"ThaiLastOfJanuary",
                 {"th_TH@calendar=buddhist", "Asia/Bangkok"},
                 utc(2026, 1, 31, 8),
                 1,
                 utc(2025, 12, 31, 17)},
        LaterRow{"PersianLastOfEsfand",
                 {"fa_IR@calendar=persian", "Asia/Tehran"},
                 utc(2026, 3, 20, 8),
                 1,
                 utc(2026, 2, 19, 20, 30)},
        LaterRow{"JapaneseLastOfAnEra",
                 {"ja_JP@calendar=japanese", "Asia/Tokyo"},
                 utc(2019, 4, 30, 3),
                 1,
                 utc(2019, 3, 31, 15)}),
    [](const auto& row) { return row.param.name; });

// --- which record is meant

TEST_F(ActionsTest, aMillisecondMakesAnotherOccurrence) {
    write("notifications.xml",
          arrayFile(fed("plan", "20.001000000000001") + fed("plan", "19.998999999999999")));
    const std::string before = feed();
    perform(Action::Paid(), "plan", 20);
    EXPECT_EQ(feed(), before);
    EXPECT_EQ(log(), arrayFile(logged(1, "plan", "20", "0"))) << "logged all the same";
}

TEST_F(ActionsTest, allRecordsOfThePlanAndDateAreMeant) {
    write("notifications.xml", arrayFile(fed("plan", "20") + fed("plan", "10") + fed("plan", "20")));
    perform(Action::Later(0), "plan", 20);
    EXPECT_EQ(feed(), arrayFile(fed("plan", "1773100800") + fed("plan", "10") + fed("plan", "1773100800")));
    perform(Action::Paid(), "plan", 1773100800);
    EXPECT_EQ(feed(), arrayFile(fed("plan", "10")));
}

TEST_F(ActionsTest, planKeysAreComparedByTheirVeryText) {
    const std::string others = fed("PLAN", "20") + fed("plan ", "20") + fed("", "20") + fed("plän", "20") +
                               fed("pla\xCC\x88n", "20");
    write("notifications.xml", arrayFile(others));
    perform(Action::Delete(true), "plan", 20);
    EXPECT_EQ(feed(), arrayFile(others));
    perform(Action::Delete(true), "plän", 20);
    EXPECT_EQ(feed(),
              arrayFile(fed("PLAN", "20") + fed("plan ", "20") + fed("", "20") + fed("pla\xCC\x88n", "20")));
}

TEST_F(ActionsTest, anIntegerOfTheSameSizeIsTheSameDate) {
    writeFeed({with(recordOf("plan", 0), "date", plist::Value(std::int64_t(20)))});
    perform(Action::Paid(), "plan", 20);
    EXPECT_EQ(feed(), arrayFile(""));
}

TEST_F(ActionsTest, aNaNIsNoOccurrenceAndNotEarlier) {
    write("notifications.xml", arrayFile(fed("plan", "nan") + fed("plan", "10")));
    perform(Action::Paid(), "plan", std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(feed(), arrayFile(fed("plan", "nan") + fed("plan", "10")));
    perform(Action::Delete(true), "plan", 20);
    EXPECT_EQ(feed(), arrayFile(fed("plan", "10")));
}

TEST_F(ActionsTest, otherPlansMayLackEverythingButTheirKey) {
    const std::string other = "\t<dict>\n\t\t<key>date</key>\n\t\t<string>soon</string>\n"
                              "\t\t<key>planpk</key>\n\t\t<string>other</string>\n\t</dict>\n";
    write("notifications.xml", arrayFile(other + fed("plan", "20")));
    perform(Action::Delete(true), "plan", 20);
    EXPECT_EQ(feed(), arrayFile(other));
}

// --- what is kept

TEST_F(ActionsTest, whatIsNotTouchedKeepsItsSpelling) {
    const std::string kept = "\t<dict>\n"
                             "\t\t<key>a</key>\n\t\t<real>0.10000000000000001</real>\n"
                             "\t\t<key>b</key>\n\t\t<integer>18446744073709551615</integer>\n"
                             "\t\t<key>c</key>\n\t\t<integer>-9223372036854775808</integer>\n"
                             "\t\t<key>d</key>\n\t\t<date>2026-03-10T12:00:00Z</date>\n"
                             "\t\t<key>e</key>\n\t\t<array>\n\t\t\t<dict/>\n\t\t\t<array/>\n"
                             "\t\t\t<string>&lt;€&gt; &amp;</string>\n\t\t</array>\n"
                             "\t\t<key>f</key>\n\t\t<real>5e-324</real>\n"
                             "\t\t<key>g</key>\n\t\t<real>1</real>\n"
                             "\t\t<key>planpk</key>\n\t\t<string>other</string>\n"
                             "\t</dict>\n";
    write("notifications.xml", arrayFile(kept + fed("plan", "20")));
    perform(Action::Paid(), "plan", 20);
    EXPECT_EQ(feed(), arrayFile(kept));
}

// "A" and "A" with a lone surrogate would become one plan, since the surrogate cannot be written.
TEST_F(ActionsTest, aPlanKeyThatCannotBeWrittenLeavesTheOldFeed) {
    const std::string feedWithSurrogate = "({planpk = \"A\\Ud800\"; }, {planpk = A; })";
    write("notifications.xml", feedWithSurrogate);
    perform(Action::Paid(), "plan", 20);
    EXPECT_EQ(feed(), feedWithSurrogate);
    EXPECT_EQ(log(), arrayFile(logged(1, "plan", "20", "0")));
    write("notifications.xml", "({planpk = \"A\\Ue9\"; }, {planpk = A; })");
    perform(Action::Paid(), "plan", 20);
    EXPECT_EQ(feed(), arrayFile("\t<dict>\n\t\t<key>planpk</key>\n\t\t<string>Aé</string>\n\t</dict>\n"
                                "\t<dict>\n\t\t<key>planpk</key>\n\t\t<string>A</string>\n\t</dict>\n"));
}

TEST_F(ActionsTest, theLogIsOnlyAppendedToWhateverItHolds) {
    const std::string older = "\t<string>no record</string>\n\t<integer>7</integer>\n"
                              "\t<dict>\n\t\t<key>type</key>\n\t\t<string>9</string>\n\t</dict>\n" +
                              logged(1, "plan", "20", "0");
    write("notifications.xml", arrayFile(fed("plan", "20")));
    write("-/actions.xml", arrayFile(older));
    perform(Action::Paid(), "plan", 20);
    EXPECT_EQ(log(), arrayFile(older + logged(1, "plan", "20", "0")));
    perform(Action::Later(-3), "plan", 20);
    EXPECT_EQ(log(), arrayFile(older + logged(1, "plan", "20", "0") + logged(2, "plan", "20", "-3")));
}

TEST_F(ActionsTest, aLogThatIsNoArrayStartsAnew) {
    for (const char* bytes : {"", "garbage <", "<plist><dict/></plist>", "<plist><array><string>cut"}) {
        write("notifications.xml", arrayFile(""));
        write("-/actions.xml", bytes);
        perform(Action::Paid(), "plan", 20);
        EXPECT_EQ(log(), arrayFile(logged(1, "plan", "20", "0"))) << bytes;
    }
}

TEST_F(ActionsTest, logsTheDateWithAllItsDigitsAndTheKeyAsItIs) {
    write("notifications.xml", arrayFile(""));
    perform(Action::Delete(true), "a <b> & Ж", 1773146700.1234567);
    EXPECT_EQ(log(), arrayFile(logged(3, "a &lt;b&gt; &amp; Ж", "1773146700.1234567", "1")));
}

// --- accounts

TEST_F(ActionsTest, makesTheFolderOfTheAccountWithoutAKey) {
    write("notifications.xml", arrayFile(""));
    ASSERT_FALSE(read("-/actions.xml"));
    perform(Action::Paid(), "plan", 20);
    EXPECT_EQ(read("-/actions.xml"), arrayFile(logged(1, "plan", "20", "0")));
}

struct AccountRow {
    const char* name;
    std::string key;
    const char* log; // below the container
};

class AccountTable : public ExchangeTest, public testing::WithParamInterface<AccountRow> {};

TEST_P(AccountTable, keepsItsOwnLog) {
    setSettings({{"account_pk", plist::Value(GetParam().key)}});
    write("notifications.xml", arrayFile(fed("plan", "20")));
    write("another/actions.xml", arrayFile("\t<string>another's</string>\n"));
    TodayWidgetLogic::performTransactionAction(transactionOf("plan", 20), Action::Paid(), nullptr);
    EXPECT_EQ(read(GetParam().log), arrayFile(logged(1, "plan", "20", "0")));
    EXPECT_EQ(read("another/actions.xml"), arrayFile("\t<string>another's</string>\n"));
    EXPECT_EQ(feed(), arrayFile("")) << "the feed is the same for every account";
}

INSTANTIATE_TEST_SUITE_P(
    Keys, AccountTable,
    testing::Values(AccountRow{"Plain", "acc-1", "acc-1/actions.xml"},
                    AccountRow{"SpacesAndLetters", "Hošek a сын", "Hošek a сын/actions.xml"},
                    AccountRow{"Empty", "", "actions.xml"}, AccountRow{"Absolute", "/etc", "etc/actions.xml"},
                    AccountRow{"Nested", "a/b/c", "a/b/c/actions.xml"},
                    AccountRow{"Above", "..", "../actions.xml"}),
    [](const auto& row) { return row.param.name; });

TEST_F(ActionsTest, anAccountKeyWithANulNamesNoFileAndTheFeedIsRewritten) {
    using namespace std::string_literals;
    setSettings({{"account_pk", plist::Value("a\0b"s)}});
    write("notifications.xml", arrayFile(fed("plan", "20")));
    perform(Action::Paid(), "plan", 20);
    EXPECT_FALSE(read("a/actions.xml"));
    EXPECT_EQ(feed(), arrayFile(""));
}

} // namespace
} // namespace exchange

#include "ctl/check/BinaryList.h"
#include "ctl/check/CheckTest.h"
#include "exchange/TodayWidgetLogic.h"

#include <gmock/gmock.h>

#include <csignal>
#include <limits>

namespace ctl {
namespace {

namespace plist = platform::plist;

using exchange::day;
using exchange::recordOf;
using exchange::tenthOfMarch;
using exchange::with;
using exchange::without;
using plist::Value;
using testing::ElementsAre;

constexpr double later = tenthOfMarch + 10 * day; // beyond the days that are shown

class FeedCheckTest : public CheckTest {
protected:
    void writeRecords(const Value& second, const Value& third = Value(recordOf("last", tenthOfMarch))) const {
        writeFeed({Value(recordOf("p", tenthOfMarch)), second, third});
    }
    void writeBinary(BinaryList& list, BinaryList::Object record) const {
        const BinaryList::Object first = list.record(tenthOfMarch, list.string("extra"), list.boolean(true));
        write("notifications.xml", list.bytes(list.array({first, record})));
    }
};

TEST_F(FeedCheckTest, findsNothingInASoundContainer) {
    EXPECT_THAT(checked(), ElementsAre("0"));
    EXPECT_EQ(run({"check"}), 0);
    EXPECT_EQ(out, "The container is sound.\n");
}

TEST_F(FeedCheckTest, namesAMissingFeed) {
    remove("notifications.xml");
    EXPECT_THAT(checked(), ElementsAre("1", "ends feedMissing notifications.xml - -"));
}

TEST_F(FeedCheckTest, namesAFeedThatIsAFolder) {
    remove("notifications.xml");
    makeFolder("notifications.xml");
    EXPECT_THAT(checked(), ElementsAre("1", "ends feedUnreadable notifications.xml - -",
                                       "loses feedNotReplaceable notifications.xml - -"));
}

TEST_F(FeedCheckTest, namesAFeedThatItMayNotRead) {
    setMode("notifications.xml", 0);
    EXPECT_THAT(checkedByAUser(), ElementsAre("1", "ends feedUnreadable notifications.xml - -"));
}

TEST_F(FeedCheckTest, namesAFeedInAFolderThatItMayNotSearch) {
    setMode(".", 0600);
    const std::vector<std::string> lines = checkedByAUser();
    EXPECT_THAT(lines, testing::Contains("ends feedUnreadable notifications.xml - -"));
    EXPECT_THAT(lines, testing::Contains("loses feedNotReplaceable notifications.xml - -"));
    EXPECT_THAT(lines, testing::Contains("loses logNotReplaceable -/actions.xml - -"));
    EXPECT_THAT(lines, testing::Contains("loses settingsNotReplaceable " + settingsFile() + " - -"));
}

TEST_F(FeedCheckTest, namesAFeedInAFolderThatItMayNotWrite) {
    setMode(".", 0555);
    EXPECT_THAT(checkedByAUser(), ElementsAre("1", "loses feedNotReplaceable notifications.xml - -",
                                              "loses settingsNotReplaceable " + settingsFile() + " - -"));
}

TEST_F(FeedCheckTest, namesABrokenFeed) {
    write("notifications.xml", "<plist><array>");
    EXPECT_THAT(checked(), ElementsAre("1", "ends feedNoList notifications.xml - -"));
}

TEST_F(FeedCheckTest, namesAFeedThatIsNoArray) {
    write("notifications.xml", "<plist><dict/></plist>");
    EXPECT_THAT(checked(), ElementsAre("1", "ends feedNoArray notifications.xml - -"));
}

TEST_F(FeedCheckTest, namesAFeedThatExpandsTooFar) {
    BinaryList list;
    writeBinary(list, list.record(tenthOfMarch, list.string("extra"), list.bomb()));
    EXPECT_THAT(checked(), ElementsAre("1", "loses feedExpands notifications.xml - -"));
}

TEST_F(FeedCheckTest, doesNotJudgeTheRecordsOfAFeedThatThePanelCannotRead) {
    BinaryList list;
    const auto broken = list.dictionary({});
    const auto bomb = list.record(tenthOfMarch, list.string("extra"), list.bomb());
    write("notifications.xml", list.bytes(list.array({broken, bomb})));
    EXPECT_TRUE(TodayWidgetLogic::getTodayTransactionsArray().empty());
    EXPECT_THAT(checked(), ElementsAre("1", "loses feedExpands notifications.xml - -"));
}

TEST_F(FeedCheckTest, namesWhatHasNoXmlForm) {
    const auto name = [](BinaryList& list) { return list.string("extra"); };
    const std::function<BinaryList::Object(BinaryList&)> records[] = {
        [&](BinaryList& list) { return list.record(later, name(list), list.null()); },
        [&](BinaryList& list) { return list.record(later, name(list), list.set({})); },
        [&](BinaryList& list) { return list.record(later, name(list), list.date(1e300)); },
        [&](BinaryList& list) {
            return list.record(later, name(list), list.dictionary({{list.integer(1), list.null()}}));
        },
    };
    for (const auto& record : records) {
        BinaryList list;
        writeBinary(list, record(list));
        EXPECT_THAT(checked(), testing::Contains("loses feedNoXmlForm notifications.xml 2 extra"));
    }
}

TEST_F(FeedCheckTest, namesWhereInARecordAValueHasNoXmlForm) {
    BinaryList list;
    const auto inner =
        list.dictionary({{list.string("note"), list.array({list.boolean(true), list.null()})}});
    writeBinary(list, list.record(later, list.string("extra"), inner));
    EXPECT_THAT(checked(), ElementsAre("1", "loses feedNoXmlForm notifications.xml 2 extra.note[2]"));
}

TEST_F(FeedCheckTest, namesAKeyWithALoneSurrogate) {
    BinaryList list;
    writeBinary(list, list.record(later, list.utf16(u"a\xD800"), list.boolean(true)));
    const std::string place = " notifications.xml 2 a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD";
    EXPECT_THAT(checked(), ElementsAre("1", "loses feedNoXmlForm" + place, "degrades notPortable" + place));
}

TEST_F(FeedCheckTest, namesARecordThatIsNoDictionary) {
    writeRecords(Value("text"));
    EXPECT_THAT(checked(), ElementsAre("1", "ends recordNoDictionary notifications.xml 2 -"));
}

TEST_F(FeedCheckTest, namesEveryFaultOfEveryRecord) {
    writeRecords(without(recordOf("q", tenthOfMarch), "amount"), Value(plist::Dictionary()));
    EXPECT_THAT(
        findings(),
        ElementsAre(
            "ends keyMissing notifications.xml 2 amount", "ends keyMissing notifications.xml 3 date",
            "ends keyMissing notifications.xml 3 name", "ends keyMissing notifications.xml 3 image",
            "ends keyMissing notifications.xml 3 amount", "ends keyMissing notifications.xml 3 income",
            "ends keyMissing notifications.xml 3 expense", "ends keyMissing notifications.xml 3 planpk",
            "ends keyMissing notifications.xml 3 single"));
}

// Neither a rewrite of the feed nor a record of the log can hold the key.
TEST_F(FeedCheckTest, namesAPlanKeyWithALoneSurrogate) {
    BinaryList list;
    const auto record = list.dictionary(
        {{list.string("date"), list.real(tenthOfMarch)}, {list.string("planpk"), list.utf16(u"a\xD800")}});
    write("notifications.xml", list.bytes(list.array({record})));
    EXPECT_THAT(findings(), testing::Contains("loses planKeySurrogate notifications.xml 1 planpk"));
    EXPECT_THAT(findings(), testing::Contains("degrades notPortable notifications.xml 1 planpk"));
}

TEST_F(FeedCheckTest, namesADateThatIsNoNumber) {
    writeRecords(Value(recordOf("n", std::numeric_limits<double>::quiet_NaN())));
    EXPECT_THAT(checked(), ElementsAre("1", "loses dateNotANumber notifications.xml 2 date"));
}

// No limit is before such a date, so that the record is shown.
TEST_F(FeedCheckTest, looksAtAllKeysWhereTheDateIsNoNumber) {
    writeRecords(without(recordOf("n", std::numeric_limits<double>::quiet_NaN()), "name"));
    EXPECT_THAT(checked(), ElementsAre("1", "ends keyMissing notifications.xml 2 name",
                                       "loses dateNotANumber notifications.xml 2 date"));
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(FeedCheckTest, notesARecordThatStandsTwice) {
    writeRecords(Value(recordOf("p", tenthOfMarch)));
    EXPECT_THAT(checked(), ElementsAre("0", "note duplicateRecord notifications.xml 2 planpk"));
}

TEST_F(FeedCheckTest, namesTextsAndDatesThatOtherReadersRefuse) {
    const std::pair<std::u16string, bool> texts[] = {
        {u"a\x01", false},   {u"a\xFFFE", false}, {u"\xFFFF", false},       {u"a\rb", false},
        {u"a\xDC00", false}, {u"a\tb\n", true},   {u"\xFFFD\x7F\x85", true}};
    for (const auto& [text, isPortable] : texts) {
        BinaryList list;
        writeBinary(list, list.record(later, list.string("extra"), list.utf16(text)));
        if (isPortable)
            EXPECT_THAT(checked(), ElementsAre("0"));
        else
            EXPECT_THAT(checked(), ElementsAre("0", "degrades notPortable notifications.xml 2 extra"));
    }
    const std::pair<double, bool> dates[] = {
        {-63113904000.0, true}, {-63113904001.0, false}, {252423993599.0, true}, {252423993600.0, false}};
    for (const auto& [date, isPortable] : dates) {
        BinaryList list;
        writeBinary(list, list.record(later, list.string("extra"), list.date(date)));
        EXPECT_EQ(findings().empty(), isPortable) << date;
    }
}

TEST_F(FeedCheckTest, acceptsACarriageReturnThatStaysAReference) {
    const auto feed = [](const std::string& name) {
        return "<plist><array><dict><key>date</key><real>0</real><key>name</key><string>" + name +
               "</string><key>image</key><string>house</string><key>amount</key><string/><key>income</key>"
               "<true/><key>expense</key><true/><key>planpk</key><string>p</string><key>single</key><true/>"
               "</dict></array></plist>";
    };
    write("notifications.xml", feed("a&#13;b"));
    EXPECT_THAT(findings(), ElementsAre());
    write("notifications.xml", feed("a\rb"));
    EXPECT_THAT(findings(), ElementsAre("degrades notPortable notifications.xml 1 name"));
}

// What the panel does with a hidden list, it does not do now.
TEST_F(FeedCheckTest, endsNothingWhileTheListIsHidden) {
    writeRecords(without(recordOf("q", tenthOfMarch), "amount"),
                 with(recordOf("r", tenthOfMarch), "image", Value("missing")));
    setSettings({{"show_transactions_count", Value(std::int64_t(-1))}});
    EXPECT_THAT(checked(), ElementsAre("0", "degrades keyMissing notifications.xml 2 amount",
                                       "degrades glyphMissing notifications.xml 3 image",
                                       "note listHidden " + settingsFile() + " - show_transactions_count"));
}

// Where a record is faulty, check says that the panel ends exactly where the reader ends.
struct Row {
    const char* name;
    const char* key;
    Value value; // a null leaves the key out
};

class FeedAgreementTest : public FeedCheckTest, public testing::WithParamInterface<Row> {
protected:
    [[nodiscard]] static Value faulty(double date) {
        const Row& row = GetParam();
        const bool isLeftOut = row.value.kind() == plist::Kind::Null;
        return isLeftOut ? without(recordOf("q", date), row.key)
                         : with(recordOf("q", date), row.key, row.value);
    }
    [[nodiscard]] static std::string finding(const char* missing, const char* otherKind) {
        const bool isLeftOut = GetParam().value.kind() == plist::Kind::Null;
        return std::string(isLeftOut ? missing : otherKind) + " notifications.xml 2 " + GetParam().key;
    }
};

TEST_P(FeedAgreementTest, saysThatAShownRecordEndsThePanel) {
    writeFeed({Value(recordOf("p", tenthOfMarch)), faulty(tenthOfMarch)});
    EXPECT_THAT(checked(), ElementsAre("1", finding("ends keyMissing", "ends keyOfOtherKind")));
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_P(FeedAgreementTest, saysWhatALaterRecordDoes) {
    writeFeed({Value(recordOf("p", tenthOfMarch)), faulty(later)});
    const std::string key = GetParam().key;
    const auto read = [] { static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()); };
    const auto act = [] {
        TodayWidgetLogic::performTransactionAction(exchange::transactionOf("p", tenthOfMarch),
                                                   TodayTransactionAction::Paid(), nullptr);
    };
    if (key == "date") {
        EXPECT_THAT(checked(), ElementsAre("1", finding("ends keyMissing", "ends keyOfOtherKind")));
        EXPECT_EXIT(read(), testing::KilledBySignal(SIGABRT), "^$");
    } else if (key == "planpk") {
        EXPECT_THAT(checked(), ElementsAre("1", finding("ends planKeyMissing", "ends planKeyOfOtherKind")));
        read();
        EXPECT_EXIT(act(), testing::KilledBySignal(SIGABRT), "^$");
    } else {
        EXPECT_THAT(checked(), ElementsAre("0", finding("degrades keyNotReady", "degrades keyNotReady")));
        read();
        act();
        clock.set(later);
        EXPECT_EXIT(read(), testing::KilledBySignal(SIGABRT), "^$");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Keys, FeedAgreementTest,
    testing::Values(
        Row{"DateMissing", "date", Value()}, Row{"DateIsText", "date", Value("1773100800")},
        Row{"NameMissing", "name", Value()}, Row{"NameIsANumber", "name", Value(1.0)},
        Row{"ImageMissing", "image", Value()}, Row{"ImageIsData", "image", Value(plist::Data{"x"})},
        Row{"AmountMissing", "amount", Value()}, Row{"AmountIsANumber", "amount", Value(5.0)},
        Row{"IncomeMissing", "income", Value()}, Row{"IncomeIsText", "income", Value("true")},
        Row{"ExpenseMissing", "expense", Value()}, Row{"ExpenseIsText", "expense", Value("no")},
        Row{"PlanpkMissing", "planpk", Value()}, Row{"PlanpkIsANumber", "planpk", Value(std::int64_t(7))},
        Row{"SingleMissing", "single", Value()}, Row{"SingleIsAnArray", "single", Value(plist::Array{})}),
    [](const auto& row) { return row.param.name; });

TEST_F(FeedCheckTest, agreesAboutARecordThatIsNoDictionary) {
    writeRecords(Value(plist::Array{}));
    EXPECT_THAT(checked(), ElementsAre("1", "ends recordNoDictionary notifications.xml 2 -"));
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::getTodayTransactionsArray()),
                testing::KilledBySignal(SIGABRT), "^$");
}

// The feeds that yield an empty list, and end the panel when it acts on a row that it still shows.
TEST_F(FeedCheckTest, agreesAboutFeedsThatCannotBeRewritten) {
    for (const char* bytes : {"", "<plist><array>", "<plist><dict/></plist>", "\x01"}) {
        write("notifications.xml", bytes);
        EXPECT_EQ(findings().front().substr(0, 5), "ends ") << bytes;
        EXPECT_TRUE(TodayWidgetLogic::getTodayTransactionsArray().empty());
        EXPECT_EXIT(TodayWidgetLogic::performTransactionAction(exchange::transactionOf("p", tenthOfMarch),
                                                               TodayTransactionAction::Paid(), nullptr),
                    testing::KilledBySignal(SIGABRT), "^$");
    }
    remove("notifications.xml");
    EXPECT_EXIT(TodayWidgetLogic::performTransactionAction(exchange::transactionOf("p", tenthOfMarch),
                                                           TodayTransactionAction::Paid(), nullptr),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(FeedCheckTest, agreesAboutAMissingContainer) {
    removeContainer();
    EXPECT_THAT(checked(), ElementsAre("1", "ends containerMissing . - -"));
    EXPECT_TRUE(TodayWidgetLogic::getTodayTransactionsArray().empty());
    EXPECT_EXIT(TodayWidgetLogic::performTransactionAction(exchange::transactionOf("p", tenthOfMarch),
                                                           TodayTransactionAction::Paid(), nullptr),
                testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT(static_cast<void>(TodayWidgetLogic::imageByName(QStringLiteral("house"), {})),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(FeedCheckTest, aFileIsNoContainer) {
    removeContainer();
    desktop.write("file", "");
    std::rename(desktop.path("file").c_str(), container.c_str());
    EXPECT_THAT(checked(), ElementsAre("1", "ends containerMissing . - -"));
}

} // namespace
} // namespace ctl

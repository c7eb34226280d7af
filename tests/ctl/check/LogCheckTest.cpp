#include "ctl/check/BinaryList.h"
#include "ctl/check/CheckTest.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/plist/Writer.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace ctl {
namespace {

namespace plist = platform::plist;

using plist::Value;
using testing::ElementsAre;

class LogCheckTest : public CheckTest {
protected:
    void writeLog(const std::string& bytes) const { write("-/actions.xml", bytes); }
    void act() const {
        TodayWidgetLogic::performTransactionAction(exchange::transactionOf("p", exchange::tenthOfMarch),
                                                   TodayTransactionAction::Paid(), nullptr);
    }
};

TEST_F(LogCheckTest, acceptsALogOfThePanel) {
    act();
    EXPECT_THAT(checked(), ElementsAre("0"));
}

TEST_F(LogCheckTest, acceptsAnEmptyLog) {
    writeLog(exchange::arrayFile(""));
    EXPECT_THAT(checked(), ElementsAre("0"));
}

TEST_F(LogCheckTest, notesAnEmptyFile) {
    writeLog("");
    EXPECT_THAT(checked(), ElementsAre("0", "note logEmptyFile -/actions.xml - -"));
}

TEST_F(LogCheckTest, namesALogThatIsNoList) {
    writeLog("<plist><array>");
    EXPECT_THAT(checked(), ElementsAre("1", "loses logNoList -/actions.xml - -"));
}

TEST_F(LogCheckTest, namesALogThatIsNoArray) {
    writeLog("<plist><dict/></plist>");
    EXPECT_THAT(checked(), ElementsAre("1", "loses logNoArray -/actions.xml - -"));
}

TEST_F(LogCheckTest, namesAFolderInPlaceOfTheLog) {
    makeFolder("-/actions.xml");
    EXPECT_THAT(checked(), ElementsAre("1", "loses logNotReplaceable -/actions.xml - -"));
}

TEST_F(LogCheckTest, doesNotWaitForAFifo) {
    ASSERT_EQ(mkfifo(path("-/actions.xml").c_str(), 0600), 0);
    EXPECT_THAT(checked(), ElementsAre("1", "loses logNotReplaceable -/actions.xml - -",
                                       "loses logUnreadable -/actions.xml - -"));
}

TEST_F(LogCheckTest, namesALogThatItMayNotRead) {
    act();
    setMode("-/actions.xml", 0);
    EXPECT_THAT(checkedByAUser(), ElementsAre("1", "loses logUnreadable -/actions.xml - -"));
}

TEST_F(LogCheckTest, namesAnAccountFolderThatItMayNotWrite) {
    setMode("-", 0555);
    EXPECT_THAT(checkedByAUser(), ElementsAre("1", "loses logNotReplaceable -/actions.xml - -"));
}

TEST_F(LogCheckTest, namesAnAccountFolderThatItMayNotSearch) {
    setMode("-", 0600);
    const std::vector<std::string> lines = checkedByAUser();
    EXPECT_THAT(lines, testing::Contains("loses logNotReplaceable -/actions.xml - -"));
    EXPECT_THAT(lines, testing::Contains("ends glyphMissing notifications.xml 1 image"));
}

TEST_F(LogCheckTest, namesAnAccountFolderThatCannotBeMade) {
    writeFeed({});
    setAccountKey("anna");
    setMode(".", 0555);
    EXPECT_THAT(checkedByAUser(), testing::Contains("loses logNotReplaceable anna/actions.xml - -"));
}

TEST_F(LogCheckTest, namesAFileInPlaceOfTheAccountFolder) {
    writeFeed({});
    setAccountKey("anna");
    write("anna", "");
    EXPECT_THAT(findings(), testing::Contains("loses logNotReplaceable anna/actions.xml - -"));
}

TEST_F(LogCheckTest, namesALogThatExpandsTooFar) {
    BinaryList list;
    writeLog(list.bytes(list.array({list.bomb()})));
    EXPECT_THAT(checked(), ElementsAre("1", "loses logExpands -/actions.xml - -",
                                       "degrades logRecordUnknown -/actions.xml 1 -"));
    const auto before = read("-/actions.xml");
    act();
    EXPECT_EQ(read("-/actions.xml"), before);
}

TEST_F(LogCheckTest, namesALogWithoutAnXmlForm) {
    BinaryList list;
    writeLog(list.bytes(list.array({list.dictionary({}), list.null()})));
    EXPECT_THAT(checked(), ElementsAre("1", "loses logNoXmlForm -/actions.xml 2 -",
                                       "degrades logRecordUnknown -/actions.xml 1 type",
                                       "degrades logRecordUnknown -/actions.xml 2 -"));
    const auto before = read("-/actions.xml");
    act();
    EXPECT_EQ(read("-/actions.xml"), before);
}

TEST_F(LogCheckTest, namesRecordsThatNoPanelWrites) {
    const auto record = [](std::int64_t type, Value date) {
        plist::Dictionary dictionary;
        dictionary.set("type", Value(type));
        dictionary.set("pk", Value("p"));
        dictionary.set("date", std::move(date));
        dictionary.set("param", Value(std::int64_t(0)));
        return Value(dictionary);
    };
    const plist::Array records = {record(1, Value(5.0)), record(4, Value(5.0)),
                                  record(1, Value(std::int64_t(5)))};
    writeLog(plist::writeXml(Value(records)).value());
    EXPECT_THAT(checked(), ElementsAre("0", "degrades logRecordUnknown -/actions.xml 2 type",
                                       "degrades logRecordUnknown -/actions.xml 3 date"));
}

TEST_F(LogCheckTest, namesTextsThatOtherReadersRefuse) {
    TodayWidgetLogic::performTransactionAction(exchange::transactionOf("a\x01", exchange::tenthOfMarch),
                                               TodayTransactionAction::Paid(), nullptr);
    EXPECT_THAT(checked(), ElementsAre("0", "degrades notPortable -/actions.xml 1 pk"));
}

} // namespace
} // namespace ctl

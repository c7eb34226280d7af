#include "host/LogModel.h"

#include "platform/system/Region.h"
#include "support/RegionOverride.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host {
namespace {

namespace plist = platform::plist;
using testing::ElementsAre;
using testing::IsEmpty;

plist::Value record(const char* plan, std::int64_t type = 1) {
    plist::Dictionary fields;
    fields.set("date", plist::Value(1773165600.0));
    fields.set("param", plist::Value(std::int64_t(0)));
    fields.set("pk", plist::Value(plan));
    fields.set("type", plist::Value(type));
    return plist::Value(std::move(fields));
}

class LogModelTest : public testing::Test {
protected:
    LogModelTest() {
        plist::Dictionary rent;
        rent.set("planpk", plist::Value("a"));
        rent.set("name", plist::Value("Rent"));
        names.learn({plist::Value(std::move(rent))});
    }

    std::vector<std::string> set(plist::Array records) {
        std::vector<std::string> lines;
        for (const QString& line : model.setRecords(std::move(records)))
            lines.push_back(line.toStdString());
        return lines;
    }

    [[nodiscard]] std::string text(int row, int column) const {
        return model.index(row, column).data().toString().toStdString();
    }

    PlanNames names;
    LogModel model{names};
};

TEST_F(LogModelTest, showsEachRecordInTheOrderOfTheFile) {
    const support::RegionOverride region({"en_US", "UTC"});
    set({record("a"), record("b", 3)});
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(text(0, LogModel::Meaning), "Paid");
    EXPECT_EQ(text(0, LogModel::Transaction), "Rent");
    EXPECT_EQ(text(0, LogModel::Due), "Mar 10, 2026");
    EXPECT_EQ(text(0, LogModel::Record), "date 1773165600, param 0, pk a, type 1");
    EXPECT_EQ(text(1, LogModel::Meaning), "Delete");
    EXPECT_EQ(text(1, LogModel::Transaction), "b");
}

TEST_F(LogModelTest, tellsOfEachNewRecordOnce) {
    EXPECT_THAT(set({}), IsEmpty());
    EXPECT_THAT(set({record("a")}), ElementsAre("logged\tdate 1773165600, param 0, pk a, type 1\n"));
    EXPECT_THAT(set({record("a")}), IsEmpty());
    EXPECT_THAT(set({record("a"), record("b"), record("c")}),
                ElementsAre("logged\tdate 1773165600, param 0, pk b, type 1\n",
                            "logged\tdate 1773165600, param 0, pk c, type 1\n"));
    EXPECT_EQ(model.rowCount(), 3);
}

TEST_F(LogModelTest, tellsOfALogThatWasTakenOrWrittenAnew) {
    set({record("a"), record("b")});
    EXPECT_THAT(set({}), ElementsAre("log\t0\n"));
    EXPECT_EQ(model.rowCount(), 0);
    set({record("a")});
    EXPECT_THAT(set({record("c"), record("d")}), ElementsAre("log\t2\n"));
    EXPECT_EQ(text(0, LogModel::Transaction), "c");
}

} // namespace
} // namespace host

#include "ctl/CtlTest.h"
#include "platform/plist/Reader.h"
#include "platform/system/Workspace.h"

#include <filesystem>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

struct Logged {
    std::int64_t type;
    std::string plan;
    double date;
    std::int64_t parameter;
    bool operator==(const Logged&) const = default;
};

class ActTest : public CtlTest {
protected:
    ActTest() {
        writeFeed({plist::Value(recordOf("plan", 10)), plist::Value(recordOf("plan", 20.5)),
                   plist::Value(recordOf("plan", 30)),
                   with(recordOf("one", 20.5), "single", plist::Value(true)),
                   plist::Value(recordOf("future", utc(2026, 3, 11)))});
    }

    [[nodiscard]] plist::Array arrayIn(const std::string& file) const {
        return *std::get<plist::Value>(plist::read(read(file).value_or("()"))).array();
    }

    [[nodiscard]] std::vector<double> datesOf(const std::string& plan) const {
        std::vector<double> dates;
        for (const plist::Value& record : arrayIn("notifications.xml"))
            if (*record.dictionary()->find("planpk")->string() == plan)
                dates.push_back(*record.dictionary()->find("date")->real());
        return dates;
    }

    [[nodiscard]] std::vector<Logged> logged() const {
        std::vector<Logged> entries;
        for (const plist::Value& value : arrayIn("-/actions.xml")) {
            const plist::Dictionary& record = *value.dictionary();
            entries.push_back({static_cast<std::int64_t>(record.find("type")->integer()->bits),
                               std::string(*record.find("pk")->string()), *record.find("date")->real(),
                               static_cast<std::int64_t>(record.find("param")->integer()->bits)});
        }
        return entries;
    }

    void expectRefused(const std::vector<std::string>& words, const std::string& sentence) {
        const std::string before = feed();
        EXPECT_EQ(run(words), 1);
        EXPECT_EQ(err, "korvel-todayctl: " + path("notifications.xml") + ": " + sentence + "\n");
        EXPECT_EQ(feed(), before);
        EXPECT_FALSE(std::filesystem::exists(path("-"))) << "nothing is written";
    }
};

using Dates = std::vector<double>;

TEST_F(ActTest, pays) {
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 0) << err;
    EXPECT_EQ(logged(), (std::vector<Logged>{{1, "plan", 20.5, 0}}));
    EXPECT_EQ(datesOf("plan"), (Dates{10, 30}));
}

TEST_F(ActTest, postpones) {
    EXPECT_EQ(run({"act", "plan", "20.5", "later", "3"}), 0) << err;
    EXPECT_EQ(logged(), (std::vector<Logged>{{2, "plan", 20.5, 3}}));
    EXPECT_EQ(datesOf("plan"), (Dates{10, utc(2026, 3, 13), 30}));
}

TEST_F(ActTest, deletesOneOccurrence) {
    EXPECT_EQ(run({"act", "plan", "20.5", "delete"}), 0) << err;
    EXPECT_EQ(logged(), (std::vector<Logged>{{3, "plan", 20.5, 0}}));
    EXPECT_EQ(datesOf("plan"), (Dates{10, 30}));
}

TEST_F(ActTest, deletesTheFutureToo) {
    EXPECT_EQ(run({"act", "plan", "20.5", "delete-future"}), 0) << err;
    EXPECT_EQ(logged(), (std::vector<Logged>{{3, "plan", 20.5, 1}}));
    EXPECT_EQ(datesOf("plan"), (Dates{10}));
}

TEST_F(ActTest, opensTheHostForInfo) {
    std::vector<std::string> opened;
    platform::Workspace::setOpener([&](const QString& url) {
        opened.push_back(url.toStdString());
        return true;
    });
    const std::string before = feed();
    EXPECT_EQ(run({"act", "plan", "20.5", "info"}), 0) << err;
    platform::Workspace::setOpener({});
    EXPECT_EQ(opened, (std::vector<std::string>{"korvelWidget://tw_edit_transaction"}));
    EXPECT_EQ(*settings().find("edit_transaction_plan_pk"), plist::Value("plan"));
    EXPECT_EQ(feed(), before);
    EXPECT_FALSE(std::filesystem::exists(path("-")));
}

TEST_F(ActTest, findsADateThatIsNamedAsAText) {
    writeFeed({plist::Value(recordOf("plan", utc(2026, 3, 9, 18)))});
    EXPECT_EQ(run({"act", "plan", "today-1 18:00", "paid"}), 0) << err;
    EXPECT_EQ(feed(), arrayFile(""));
}

TEST_F(ActTest, refusesWhatIsNotInTheWidgetsList) {
    expectRefused({"act", "plan", "20", "paid"}, "the widget's list has no transaction of plan plan at 20");
    expectRefused({"act", "other", "20.5", "paid"},
                  "the widget's list has no transaction of plan other at 20.5");
    expectRefused({"act", "future", "2026-03-11", "paid"},
                  "the widget's list has no transaction of plan future at 2026-03-11");
}

TEST_F(ActTest, refusesToDeleteTheFutureOfASinglePlan) {
    expectRefused({"act", "one", "20.5", "delete-future"},
                  "plan one is a single one and has no later occurrences to delete");
}

TEST_F(ActTest, namesTheRecordOverWhichTheWidgetWouldEndBeforeAnythingIsWritten) {
    // Past the limit, so that only the rewrite looks at its plan.
    writeFeed({plist::Value(recordOf("plan", 20)), without(recordOf("future", utc(2026, 3, 11)), "planpk")});
    expectRefused({"act", "plan", "20", "paid"}, "record 2: \"planpk\" is missing");
}

TEST_F(ActTest, saysThatTheLogCannotBeWritten) {
    write("-", "a file");
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") + ": the action could not be logged\n");
    EXPECT_EQ(datesOf("plan"), (Dates{10, 30})) << "the feed is rewritten all the same, as the widget does";
}

} // namespace
} // namespace ctl

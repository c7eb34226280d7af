#include "bridge/sources/GnuCash.h"

#include "bridge/sources/Gzip.h"
#include "bridge/sources/Packed.h"
#include "bridge/sources/Table.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;
using bridge::Day;
using bridge::Plan;
using bridge::Reading;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr Day today{2026y / 11 / 21};
constexpr bridge::Period period{today, Day(2026y / 12 / 22)};

const Plan* planOf(const Reading& reading, const std::string& name) {
    const auto found = std::find_if(reading.plans.begin(), reading.plans.end(),
                                    [&](const Plan& plan) { return plan.name == name; });
    return found == reading.plans.end() ? nullptr : &*found;
}

// What the table's column since_last_run names: days and what becomes of them.
std::vector<std::pair<std::string, std::string>> listedOf(const std::string& column) {
    std::vector<std::pair<std::string, std::string>> listed;
    for (std::size_t at = 0; at < column.size(); at = std::min(column.find("20", at + 10), column.size())) {
        const std::string day = column.substr(at, 10);
        if (bridge::dayOfText(day))
            listed.emplace_back(day, column.substr(at + 11, column.find(',', at) - at - 11));
    }
    return listed;
}

std::vector<std::string> daysOf(const Plan& plan) {
    std::vector<std::string> days;
    for (const auto& occurrence : plan.occurrences)
        days.push_back(bridge::textOfDay(occurrence.day));
    return days;
}

const std::string& book() {
    static const std::string bytes = bridge::unpack(bridge_test::dataFile("gnucash/plans.gnucash")).bytes;
    return bytes;
}

std::string bookWith(const std::string& part, const std::string& other) {
    std::string bytes = book();
    const std::size_t at = bytes.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return bytes.replace(at, part.size(), other);
}

Reading readingOf(const std::string& bytes) {
    return bridge::readGnuCash(bytes, period);
}

} // namespace

TEST(GnuCash, showsWhatTheProgramIsAboutToCreate) {
    const std::string packed = bridge_test::dataFile("gnucash/plans.gnucash");
    const Reading due = bridge::readGnuCash(packed, {today, today});
    const Reading later = bridge::readGnuCash(packed, {today, Day(2027y / 12 / 31)});
    EXPECT_EQ(due.fault, "");
    EXPECT_THAT(due.warnings, IsEmpty());
    const auto rows = bridge_test::tableOf("gnucash/due.tsv");
    ASSERT_EQ(rows.size(), 35U);
    EXPECT_EQ(due.plans.size(), 34U);
    for (const auto& row : rows) {
        const std::string& name = row.at("name");
        const Plan* const plan = planOf(due, name);
        if (row.at("since_last_run") == "(not listed)") {
            EXPECT_FALSE(plan) << name;
            continue;
        }
        ASSERT_TRUE(plan) << name;
        std::vector<std::string> expected;
        std::vector<std::string> ahead;
        std::string afterPostponed;
        for (const auto& [day, fate] : listedOf(row.at("since_last_run"))) {
            (day <= "2026-11-21" ? expected : ahead).push_back(day);
            if (fate != "Postponed" && afterPostponed.empty())
                afterPostponed = day;
        }
        EXPECT_EQ(daysOf(*plan), expected) << name;
        // The program's next day, and what it lists before its time.
        const std::vector<std::string> all = daysOf(*planOf(later, name));
        EXPECT_TRUE(afterPostponed.empty() || afterPostponed == row.at("next_occur")) << name;
        if (!ahead.empty()) {
            EXPECT_EQ(all.at(expected.size()), ahead.front()) << name;
        }
        if (row.at("next_occur") == "never") {
            EXPECT_THAT(all, IsEmpty()) << name;
        } else if (afterPostponed.empty()) {
            EXPECT_EQ(all.at(0), row.at("next_occur")) << name;
        }
    }
}

TEST(GnuCash, readsWhatThePlansSay) {
    const Reading reading = readingOf(book());
    ASSERT_EQ(reading.fault, "");
    constexpr const char* directions[] = {"expense", "income", "transfer"};
    std::size_t compared = 0;
    for (const auto& row : bridge_test::tableOf("gnucash/due.tsv")) {
        const Plan* const plan = planOf(reading, row.at("name"));
        if (!plan)
            continue;
        ++compared;
        const std::string& name = row.at("name");
        EXPECT_EQ(plan->payee, row.at("description")) << name;
        EXPECT_EQ(plan->account, row.at("asset_account")) << name;
        EXPECT_EQ(directions[static_cast<int>(plan->direction)], row.at("direction")) << name;
        if (row.at("amount").starts_with("(unknown")) {
            EXPECT_FALSE(plan->amount) << name;
            continue;
        }
        ASSERT_TRUE(plan->amount) << name;
        EXPECT_EQ(bridge::textOfDecimal(plan->amount->number),
                  row.at("amount").substr(0, row.at("amount").find(' ')))
            << name;
        EXPECT_EQ(plan->amount->currency, row.at("currency")) << name;
    }
    EXPECT_EQ(compared, 34U);
    EXPECT_EQ(planOf(reading, "Rent")->key, "8c1241029231e30855816b2db1ded49e");
    EXPECT_EQ(planOf(reading, "Rent")->category, "Expenses:Rent");
    EXPECT_EQ(planOf(reading, "To savings")->category, "");
    EXPECT_EQ(planOf(reading, "Weekend back")->occurrences.at(0),
              (bridge::Occurrence{Day(2026y / 11 / 20), Day(2026y / 11 / 22)}));
}

TEST(GnuCash, tellsSinglePlans) {
    std::vector<std::string> singles;
    for (const Plan& plan : readingOf(book()).plans)
        if (plan.isSingle)
            singles.push_back(plan.name);
    EXPECT_THAT(singles, testing::UnorderedElementsAre("Once: concert", "Once late", "Ends soon"));
}

TEST(GnuCash, showsNothingAsDueThatTheProgramHasCreated) {
    const Reading reading =
        bridge::readGnuCash(bridge_test::dataFile("gnucash/entered.gnucash"), {today, today});
    ASSERT_EQ(reading.fault, "");
    EXPECT_EQ(reading.plans.size(), 33U) << "\"Variable\" and \"Disabled\" are disabled there";
    // What is behind a postponed occurrence is offered again even there.
    for (const Plan& plan : reading.plans)
        EXPECT_EQ(daysOf(plan).size(), plan.name == "Postponed one" ? 3U : 0U) << plan.name;
}

TEST(GnuCash, readsPackedAndPlainFilesAlike) {
    const Reading plain = readingOf(book());
    const Reading packed = readingOf(bridge_test::dataFile("gnucash/plans.gnucash"));
    ASSERT_EQ(plain.plans.size(), packed.plans.size());
    for (std::size_t at = 0; at < plain.plans.size(); ++at) {
        EXPECT_EQ(plain.plans[at].key, packed.plans[at].key);
        EXPECT_EQ(plain.plans[at].occurrences, packed.plans[at].occurrences);
    }
}

TEST(GnuCash, readsNothingOfAFileThatIsCutOff) {
    const std::string end = "</gnc-v2>";
    const std::size_t size = book().rfind(end) + end.size();
    for (std::size_t length = 1; length < size; length += length < 2000 || length + 100 > size ? 1 : 4999) {
        const Reading reading = readingOf(book().substr(0, length));
        EXPECT_FALSE(reading.isSound()) << length;
        EXPECT_THAT(reading.plans, IsEmpty()) << length;
    }
    const std::string packed = bridge_test::dataFile("gnucash/plans.gnucash");
    EXPECT_THAT(readingOf(packed.substr(0, packed.size() / 2)).fault, StartsWith("is cut off"));
    EXPECT_THAT(readingOf(book().substr(0, size / 2)).fault, StartsWith("is cut off at line "));
}

TEST(GnuCash, readsNothingOfABrokenFile) {
    struct Case {
        const char* name;
        std::string bytes;
        const char* fault;
    };
    const std::string plan = "<sx:id type=\"guid\">8c1241029231e30855816b2db1ded49e</sx:id>";
    const Case cases[] = {
        {"empty", "", "is empty"},
        {"database", "SQLite format 3" + std::string(1, '\0'), "is a database of another kind (SQLite)"},
        {"text", "hello", "is no book of GnuCash"},
        {"blank", " \n", "is no book of GnuCash"},
        {"another root", "<homebank/>", "is no book of GnuCash: it begins with <homebank>"},
        {"no book", "<gnc-v2></gnc-v2>", "is no book of GnuCash"},
        {"entities", "<!DOCTYPE a [<!ENTITY b 'c'>]><gnc-v2/>", "its document type declares entities"},
        {"not well-formed", bookWith("<book:id", "<book:id <"), "it is no well-formed XML"},
        {"newer book", bookWith("<gnc:book version=\"2.0.0\">", "<gnc:book version=\"3.0.0\">"),
         "was saved by another version of GnuCash: its <gnc:book> is of version \"3.0.0\""},
        {"newer plan",
         bookWith("<gnc:schedxaction version=\"2.0.0\">", "<gnc:schedxaction version=\"3.0.0\">"),
         "was saved by another version of GnuCash: its <gnc:schedxaction>"},
        {"plan without id", bookWith(plan, ""), "a <gnc:schedxaction> has no <sx:id>"},
        {"two plans with one id",
         bookWith("<sx:id type=\"guid\">a13ce67dd7f70431c60645c9a88b260a</sx:id>", plan),
         "two plans have the id 8c1241029231e30855816b2db1ded49e"},
        {"two accounts with one id",
         bookWith("<act:id type=\"guid\">59c12f4756168c8998245fc5fc876709",
                  "<act:id type=\"guid\">9aedeaf1f77b8642abe528503b8c5de8"),
         "two accounts have the id"},
        {"account of a split missing",
         bookWith("<act:id type=\"guid\">59c12f4756168c8998245fc5fc876709", "<act:id type=\"guid\">x"),
         "the plan “Rent” has an account that is not in the file"},
        {"no such day", bookWith("<gdate>2026-09-01</gdate>", "<gdate>2026-09-31</gdate>"),
         "a <sx:last> has no day"},
        {"no first day", bookWith("<sx:start>\n    <gdate>2026-01-01</gdate>\n  </sx:start>", ""),
         "a plan has no first day"},
        {"unknown period", bookWith("period_type>month<", "period_type>fortnight<"),
         "unknown kind (\"fortnight\")"},
        {"unknown weekend rule", bookWith("weekend_adj>back<", "weekend_adj>up<"), "unknown kind (\"up\")"},
        {"every no month", bookWith("<recurrence:mult>1<", "<recurrence:mult>0<"), "no count of periods"},
        {"every minus one month", bookWith("<recurrence:mult>1<", "<recurrence:mult>-1<"), "is no count"},
        {"huge count", bookWith("<sx:rem-occur>3<", "<sx:rem-occur>99999999999999999999<"), "is no count"},
        {"fraction of letters",
         bookWith("<slot:value type=\"numeric\">950/1", "<slot:value type=\"numeric\">many"),
         "\"many\" is no fraction"},
        {"too deep",
         bookWith(
             "<book:slots>", "<book:slots>" +
                                 [] {
                                     std::string open;
                                     for (int depth = 0; depth < 100'000; ++depth)
                                         open += "<a>";
                                     return open;
                                 }()),
         "elements are nested too deep"}};
    for (const auto& [name, bytes, fault] : cases) {
        const Reading reading = readingOf(bytes);
        EXPECT_THAT(reading.fault, HasSubstr(fault)) << name;
        EXPECT_THAT(reading.plans, IsEmpty()) << name;
        EXPECT_THAT(reading.warnings, IsEmpty()) << name;
    }
}

TEST(GnuCash, takesHugeCountsForWhatTheyAre) {
    const Reading reading =
        readingOf(bookWith("<recurrence:mult>1<", "<recurrence:mult>9223372036854775807<"));
    ASSERT_EQ(reading.fault, "");
    EXPECT_THAT(planOf(reading, "Rent")->occurrences, IsEmpty());
}

TEST(GnuCash, listsTheFirstOfVeryManyAndSaysSo) {
    std::string bytes = bookWith("period_type>month<", "period_type>day<");
    const std::string first = "<gdate>2026-01-01</gdate>";
    for (int start = 0; start < 2; ++start)
        bytes.replace(bytes.find(first), first.size(), "<gdate>0001-01-01</gdate>");
    const std::string last = "<gdate>2026-09-01</gdate>";
    bytes.replace(bytes.find(last), last.size(), "<gdate>0001-01-01</gdate>");
    const Reading reading = readingOf(bytes);
    ASSERT_EQ(reading.fault, "");
    EXPECT_EQ(planOf(reading, "Rent")->occurrences.size(), 4000U);
    EXPECT_THAT(reading.warnings, testing::ElementsAre(HasSubstr("“Rent” is due more than 4000 times")));
}

TEST(GnuCash, warnsOfFeaturesThatItDoesNotKnow) {
    const Reading reading = readingOf(
        bookWith("<book:slots>", "<book:slots><slot><slot:key>features</slot:key><slot:value type=\"frame\">"
                                 "<slot><slot:key>Times of day</slot:key><slot:value type=\"string\">x"
                                 "</slot:value></slot></slot:value></slot>"));
    EXPECT_EQ(reading.plans.size(), 34U);
    EXPECT_THAT(reading.warnings, testing::ElementsAre(HasSubstr("“Times of day”")));
}

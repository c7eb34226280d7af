#include "bridge/sources/HledgerProgram.h"
#include "bridge/sources/Table.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>

using bridge::Day;
using bridge::HledgerProgram;
using bridge::HledgerRange;
using bridge::Period;
using bridge::Plan;
using bridge::Reading;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr Day today{2026y / 11 / 21};
constexpr Day september{2026y / 9 / 1};
constexpr Period period{today, Day(2026y / 12 / 22)};
const std::string plans = KORVEL_TEST_DATA "/bridge/hledger/plans.journal";

class HledgerProgramTest : public testing::Test {
protected:
    std::string scriptOf(const std::string& text) {
        const std::string path = folder_.write("program", "#!/bin/sh\n" + text + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    Reading readingOf(const std::string& journal) {
        const HledgerRange range = bridge::rangeOf(std::nullopt, period);
        const auto report = HledgerProgram().report(folder_.write("a.journal", journal), range);
        EXPECT_EQ(report.fault, "");
        return bridge::readHledger(report.answer, range.first, period);
    }

    support::TemporaryFolder folder_;
};

// The table's columns that a plan has, in one line.
std::string lineOf(const Plan& plan, Day day) {
    constexpr const char* directions[] = {"expense", "income", "transfer"};
    return bridge::textOfDay(day) + '\t' +
           (day < today    ? "overdue"
            : day == today ? "today"
                           : "future") +
           '\t' + plan.name + '\t' + plan.account + '\t' +
           (plan.amount ? bridge::textOfDecimal(plan.amount->number) + '\t' + plan.amount->currency : "\t") +
           '\t' + directions[static_cast<int>(plan.direction)];
}

std::string lineOf(const bridge_test::Row& row) {
    std::string line;
    for (const char* name :
         {"date", "state", "description", "asset_account", "amount", "currency", "direction"})
        line += (line.empty() ? "" : "\t") + row.at(name);
    return line;
}

} // namespace

TEST_F(HledgerProgramTest, showsWhatHledgerPrints) {
    const HledgerRange range{september, september, Day(2027y / 2 / 28)};
    const auto report = HledgerProgram().report(plans, range);
    ASSERT_EQ(report.fault, "");
    const Reading reading = bridge::readHledger(report.answer, range.first, {today, range.last});
    ASSERT_EQ(reading.fault, "");
    EXPECT_THAT(reading.warnings, IsEmpty());

    std::multiset<std::string> expected;
    std::size_t paid = 0;
    const auto rows = bridge_test::tableOf("hledger/due.tsv");
    for (const auto& row : rows) {
        const bool isPaid = std::any_of(rows.begin(), rows.end(), [&](const auto& real) {
            return real.at("state") == "real" && !row.at("plan_tag").empty() &&
                   real.at("plan_tag") == row.at("plan_tag") + ", paid-of: " + row.at("date");
        });
        paid += isPaid ? 1 : 0;
        if (row.at("state") != "real" && !isPaid)
            expected.insert(lineOf(row));
    }
    std::multiset<std::string> shown;
    for (const Plan& plan : reading.plans)
        for (const auto& occurrence : plan.occurrences)
            shown.insert(lineOf(plan, occurrence.day));
    EXPECT_EQ(rows.size(), 105U);
    EXPECT_EQ(paid, 1U);
    EXPECT_EQ(shown, expected);
}

TEST_F(HledgerProgramTest, namesEachPlanAsTheJournalDoes) {
    const HledgerRange range{september, september, period.last};
    const Reading reading =
        bridge::readHledger(HledgerProgram().report(plans, range).answer, september, period);
    // In the order of the file, without the yearly one, which is not due before January.
    ASSERT_EQ(reading.plans.size(), 17U);
    EXPECT_EQ(reading.plans[0].key, "rent");
    EXPECT_EQ(reading.plans[0].name, "Landlord & Söhne <GmbH> \"Süd\" | rent");
    EXPECT_EQ(reading.plans[0].payee, "Landlord & Söhne <GmbH> \"Süd\"");
    EXPECT_EQ(reading.plans[0].category, "expenses:rent");
    EXPECT_EQ(reading.plans[1].payee, "Market");
    EXPECT_EQ(reading.plans[1].key, "~2a9648352331b0f2") << "a key that is kept elsewhere";
    std::set<std::string> keys;
    std::set<std::string> singles;
    for (const Plan& plan : reading.plans) {
        keys.insert(plan.key);
        if (plan.isSingle)
            singles.insert(plan.name);
    }
    EXPECT_EQ(keys.size(), reading.plans.size());
    EXPECT_EQ(singles, (std::set<std::string>{"Market | once concert", "Market | once late"}));
}

TEST_F(HledgerProgramTest, tellsTheFilesThatTheJournalIncludes) {
    const auto report = HledgerProgram().report(plans, {september, september, period.last});
    EXPECT_THAT(report.files, ElementsAre(plans, KORVEL_TEST_DATA "/bridge/hledger/paid.journal"));
}

TEST_F(HledgerProgramTest, countsFromTheSameDayOnEveryDay) {
    std::set<Day> days[2];
    for (const int later : {0, 1}) {
        const Period shifted{period.today + std::chrono::days(later), period.last};
        const HledgerRange range = bridge::rangeOf(std::nullopt, shifted);
        const auto report =
            HledgerProgram().report(folder_.write("a.journal", "~ every 10 days  X\n  a  1\n  b\n"), range);
        const Reading reading = bridge::readHledger(report.answer, range.first, shifted);
        ASSERT_EQ(reading.plans.size(), 1U);
        for (const auto& occurrence : reading.plans[0].occurrences)
            if (occurrence.day > today)
                days[later].insert(occurrence.day);
    }
    EXPECT_EQ(days[0].size(), 3U);
    EXPECT_EQ(days[0], days[1]);
}

TEST_F(HledgerProgramTest, letsRulesCountFromTheDayThatTheUserChose) {
    const HledgerRange range = bridge::rangeOf(september, period);
    const auto report =
        HledgerProgram().report(folder_.write("a.journal", "~ every 50 days  X\n  a  1\n  b\n"), range);
    const Reading reading = bridge::readHledger(report.answer, range.first, period);
    ASSERT_EQ(reading.plans.size(), 1U);
    EXPECT_THAT(reading.plans[0].occurrences,
                ElementsAre(bridge::Occurrence{september, september},
                            bridge::Occurrence{Day(2026y / 10 / 21), Day(2026y / 10 / 21)},
                            bridge::Occurrence{Day(2026y / 12 / 10), Day(2026y / 12 / 10)}));
}

TEST_F(HledgerProgramTest, countsAPaymentFromBeforeTheFirstDay) {
    const Reading reading =
        readingOf("2026-07-01 paid ahead  ; plan: p, paid-of: 2026-12-01\n  expenses:a  1\n"
                  "  assets:b\n~ monthly from 2026-12-01  X  ; plan: p\n  expenses:a  1\n"
                  "  assets:b\n");
    ASSERT_EQ(reading.plans.size(), 1U);
    EXPECT_THAT(reading.plans[0].occurrences, IsEmpty());
}

TEST_F(HledgerProgramTest, saysWhatHledgerRefuses) {
    const std::string rule = folder_.write("a.journal", "~ monthly X\n  a  1\n  b\n");
    const auto report = HledgerProgram().report(rule, {september, september, period.last});
    EXPECT_THAT(report.fault, testing::StartsWith("is refused by hledger: " + rule + ":1:10:"));
    EXPECT_THAT(report.fault, HasSubstr("a double space is required"));
    EXPECT_THAT(report.fault, testing::Not(HasSubstr("|")));
    EXPECT_EQ(report.answer.transactions, "");
    EXPECT_THAT(HledgerProgram().report(rule + ".none", {september, september, period.last}).fault,
                HasSubstr("was not found"));
}

// hledger does not start where it cannot tell what its folder is.
TEST_F(HledgerProgramTest, readsAJournalAlsoWhereTheCurrentFolderIsGone) {
    const std::filesystem::path before = std::filesystem::current_path();
    const std::string gone = folder_.path("gone");
    std::filesystem::create_directory(gone);
    std::filesystem::current_path(gone);
    std::filesystem::remove(gone);
    const HledgerProgram program;
    EXPECT_EQ(program.report(plans, bridge::rangeOf(std::nullopt, period)).fault, "");
    EXPECT_EQ(program.check(plans), "");
    std::filesystem::current_path(before);
}

TEST_F(HledgerProgramTest, saysThatHledgerIsMissing) {
    const auto report = HledgerProgram("hledger-is-not-here").report(plans, {today, today, today});
    EXPECT_EQ(report.fault, "needs the program hledger, which is not installed");
}

TEST_F(HledgerProgramTest, endsAProgramThatDoesNotEnd) {
    const HledgerProgram program(scriptOf("exec tail -f /dev/null"), {50ms, 1000});
    EXPECT_EQ(program.report(plans, {today, today, today}).fault, "takes hledger too long to read");
}

TEST_F(HledgerProgramTest, endsAProgramThatPrintsTooMuch) {
    const HledgerProgram program(scriptOf("exec cat /dev/zero"), {60s, 100'000});
    EXPECT_EQ(program.report(plans, {today, today, today}).fault, "makes hledger print too much");
}

TEST_F(HledgerProgramTest, saysThatHledgerCrashed) {
    const HledgerProgram program(scriptOf("kill -SEGV $$"), {60s, 1000});
    EXPECT_EQ(program.report(plans, {today, today, today}).fault, "crashes hledger");
}

TEST_F(HledgerProgramTest, tellsDirectionsByTypesAndNames) {
    const Reading reading = readingOf(R"(
commodity 1,000.00 EUR
account Konto  ; type: A
~ every 1st day of month  typed
    Ausgaben:a  5 EUR
    Konto:Giro
~ every 2nd day of month  named
    Ausgaben:a  5 EUR
    Aktiva:b
~ every 3rd day of month  unknown
    x:a  5 EUR
    y:b
~ every 4th day of month  loan
    expenses:interest  100 EUR
    liabilities:loan  400 EUR
    assets:bank
~ every 5th day of month  several commodities
    expenses:a  5 EUR
    expenses:b  $3
    assets:bank
~ every 6th day of month  exchange
    assets:usd  $11
    equity:conversion  $-11
    equity:conversion  10 EUR
    assets:bank  -10 EUR
~ every 7th day of month  virtual
    (budget:a)  12 EUR
    expenses:a  1 EUR
    assets:bank
~ every 8th day of month  huge
    expenses:a  123456789012345678901234.5 EUR
    assets:bank
)");
    std::vector<std::string> lines;
    for (const Plan& plan : reading.plans)
        lines.push_back(lineOf(plan, plan.occurrences.back().day).substr(18));
    EXPECT_THAT(lines,
                ElementsAre("typed\tKonto:Giro\t-5.00\tEUR\texpense", "named\tAktiva:b\t-5.00\tEUR\texpense",
                            "unknown\t\t\t\texpense", "loan\tassets:bank\t-500.00\tEUR\texpense",
                            "several commodities\tassets:bank\t\t\texpense",
                            "exchange\tassets:bank\t-10.00\tEUR\ttransfer",
                            "virtual\tassets:bank\t-1.00\tEUR\texpense", "huge\tassets:bank\t\t\texpense"));
    EXPECT_THAT(reading.warnings,
                ElementsAre(HasSubstr("“Ausgaben:a”, which is taken by its name"),
                            HasSubstr("“Aktiva:b”, which is taken by"),
                            HasSubstr("“x:a”, which is taken for a category"), HasSubstr("“y:b”")));
}

TEST_F(HledgerProgramTest, readsAJournalOfAnotherLanguageInAFolderOfAnotherName) {
    const std::string journal = folder_.write("Bücher & Sonstiges/mein \"Journal\".journal", R"(
decimal-mark ,
commodity 1.000,00 EUR
account Aktiva  ; type: A
account Ausgaben  ; type: X
~ every 5th day of month from 2026-12-05  Miete
    Ausgaben:Wohnung  1.200,5 EUR
    Aktiva:Giro
)");
    const HledgerRange range{september, september, period.last};
    const auto report = HledgerProgram().report(journal, range);
    EXPECT_THAT(report.files, ElementsAre(journal));
    const Reading reading = bridge::readHledger(report.answer, september, period);
    EXPECT_THAT(reading.warnings, IsEmpty());
    ASSERT_EQ(reading.plans.size(), 1U);
    EXPECT_EQ(lineOf(reading.plans[0], Day(2026y / 12 / 5)),
              "2026-12-05\tfuture\tMiete\tAktiva:Giro\t-1200.50\tEUR\texpense");
}

TEST_F(HledgerProgramTest, keepsRulesWithOneKeyApart) {
    const std::string postings = "\n  expenses:a  1\n  assets:b\n\n";
    const Reading reading =
        readingOf("~ monthly from 2026-12-01  Twin" + postings + "~ monthly from 2026-12-01  Twin" +
                  postings + "~ monthly from 2026-12-01  A  ; plan: t" + postings +
                  "~ weekly from 2026-12-07  B  ; plan: t" + postings);
    std::vector<std::string> keys;
    for (const Plan& plan : reading.plans)
        keys.push_back(plan.key);
    EXPECT_THAT(keys,
                ElementsAre("~13c9835ce53f2ce4", "~13c9835ce53f2ce4-2", "t", testing::StartsWith("t~")));
    EXPECT_THAT(reading.warnings,
                ElementsAre(HasSubstr("give it a tag"), HasSubstr("“~ weekly from 2026-12-07  B”")));
}

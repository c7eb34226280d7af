#include "bridge/sources/KMyMoney.h"

#include "bridge/sources/Packed.h"
#include "bridge/sources/Table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

using namespace bridge;
using namespace bridge_test;

namespace {

const Day today = *dayOfText("2026-11-21");
const Period month{today, *dayOfText("2026-12-21")};
const Period year{today, today + std::chrono::days(365)};

Reading read(const std::string& name, const Period& period) {
    return readKMyMoney(dataFile("kmymoney/" + name), period);
}

const Plan& planOf(const Reading& reading, const std::string& key) {
    const auto found = std::ranges::find(reading.plans, key, &Plan::key);
    if (found == reading.plans.end())
        throw std::runtime_error("no plan " + key);
    return *found;
}

long overdueOf(const Plan& plan) {
    return std::ranges::count_if(plan.occurrences,
                                 [](const Occurrence& occurrence) { return occurrence.day < today; });
}

std::vector<std::string> nominalsOf(const Plan& plan) {
    std::vector<std::string> days;
    for (const Occurrence& occurrence : plan.occurrences)
        days.push_back(textOfDay(occurrence.nominal));
    return days;
}

std::string stateOf(const Plan& plan) {
    if (plan.occurrences.empty())
        return "finished";
    const Day next = plan.occurrences[0].day;
    if (next == today)
        return "today";
    return next < today ? "overdue" : "future";
}

void expectTexts(const Plan& plan, const Row& row) {
    EXPECT_EQ(plan.name, row.at("name"));
    EXPECT_EQ(plan.account, row.at("account"));
    EXPECT_EQ(plan.payee, row.at("payee") == "---" ? "" : row.at("payee"));
    const std::map<std::string, Direction> directions = {
        {"Bill", Direction::Expense}, {"Deposit", Direction::Income}, {"Transfer", Direction::Transfer}};
    EXPECT_EQ(plan.direction, directions.at(row.at("type")));
}

void expectAmounts(const Plan& plan, const Row& row) {
    ASSERT_TRUE(plan.amount);
    const std::string& list = row.at("amount_text_schedules_view");
    EXPECT_EQ(std::abs(plan.amount->number.units), shownUnits(list)) << "the list shows no sign";
    EXPECT_EQ(plan.amount->currency, shownCurrency(list));
    EXPECT_EQ(plan.amount->number.places, plan.amount->currency == "JPY" ? 0 : 2);
    const std::string& home = row.at("home_amount_text");
    if (!home.empty()) {
        EXPECT_EQ(plan.amount->number.units * std::max(1L, overdueOf(plan)), shownUnits(home));
    }
}

// A file with one schedule; the lines are numbered from 1.
std::string fileWith(const std::string& attributes, const std::string& postdate = "2026-11-21") {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE KMYMONEY-FILE>\n<KMYMONEY-FILE>\n"
           "<FILEINFO><VERSION id=\"1\"/><FIXVERSION id=\"5\"/></FILEINFO>\n"
           "<ACCOUNTS><ACCOUNT id=\"A1\" type=\"1\" name=\"Cash\" parentaccount=\"AStd::Asset\" "
           "currency=\"EUR\"/>"
           "<ACCOUNT id=\"A2\" type=\"13\" name=\"Home\" parentaccount=\"AStd::Expense\" currency=\"EUR\"/>"
           "<ACCOUNT id=\"A3\" type=\"13\" name=\"Rent\" parentaccount=\"A2\" currency=\"EUR\"/>"
           "<ACCOUNT id=\"AStd::Expense\" type=\"13\" name=\"Expense\" parentaccount=\"\"/></ACCOUNTS>\n"
           "<SCHEDULES>\n<SCHEDULED_TX " +
           attributes + ">\n<TRANSACTION postdate=\"" + postdate +
           "\"><SPLITS><SPLIT account=\"A3\" shares=\"19/2\"/><SPLIT account=\"A1\" "
           "shares=\"-19/2\"/></SPLITS>"
           "</TRANSACTION>\n</SCHEDULED_TX>\n</SCHEDULES>\n"
           "<CURRENCIES><CURRENCY id=\"EUR\" saf=\"100\"/></CURRENCIES>\n</KMYMONEY-FILE>\n";
}

const std::string rent =
    "id=\"SCH000001\" name=\"Rent\" type=\"1\" occurence=\"32\" occurenceMultiplier=\"1\" "
    "weekendOption=\"2\" startDate=\"2026-01-21\" endDate=\"\" lastPayment=\"2026-10-21\"";

} // namespace

TEST(KMyMoney, listsWhatTheProgramLists) {
    for (const char* name : {"plans.kmy", "plans.xml"}) {
        const Reading nearby = read(name, month);
        const Reading far = read(name, year);
        ASSERT_EQ(nearby.fault, "");
        EXPECT_TRUE(nearby.warnings.empty());
        const std::vector<Row> rows = tableOf("kmymoney/due.tsv");
        EXPECT_EQ(nearby.plans.size(), rows.size());
        for (const Row& row : rows) {
            SCOPED_TRACE(row.at("schedule_id"));
            const Plan& plan = planOf(far, row.at("schedule_id"));
            expectTexts(plan, row);
            expectAmounts(plan, row);
            EXPECT_EQ(stateOf(plan), row.at("state"));
            if (row.at("next_due_shown") != "Finished") {
                EXPECT_EQ(textOfDay(plan.occurrences.at(0).day), row.at("next_due_shown"));
                EXPECT_EQ(plan.isSingle, row.at("frequency") == "Once");
            }
            const std::string& count = row.at("overdue_payments");
            EXPECT_EQ(overdueOf(plan), count.empty() ? 0 : std::stol(count));
            const Plan& soon = planOf(nearby, row.at("schedule_id"));
            const bool isSoon = row.at("next_due_shown") <= textOfDay(month.last);
            EXPECT_EQ(!soon.occurrences.empty(), isSoon);
        }
    }
}

TEST(KMyMoney, knowsTheDaysOfOverdueAndLaterOccurrences) {
    const Reading reading = read("plans.kmy", month);
    using Days = std::vector<std::string>;
    const auto days = [&reading](const char* key) { return nominalsOf(planOf(reading, key)); };
    EXPECT_EQ(days("SCH000001"), (Days{"2026-10-01", "2026-11-01", "2026-12-01"}));
    EXPECT_EQ(days("SCH000010"), (Days{"2026-11-22"})) << "shown on Friday, counted by Sunday";
    EXPECT_EQ(days("SCH000019"), (Days{"2026-09-15", "2026-10-15", "2026-11-15"})) << "ends in November";
    EXPECT_EQ(days("SCH000023"), (Days{"2026-11-19", "2026-11-29", "2026-12-09", "2026-12-19"}));
    EXPECT_EQ(days("SCH000028"), (Days{"2026-11-30", "2026-12-15"}));
    EXPECT_EQ(days("SCH000029"), (Days{"2026-10-16", "2026-11-16", "2026-12-16"})) << "one is paid ahead";
    EXPECT_EQ(days("SCH000030"), (Days{"2026-11-05", "2026-11-12", "2026-11-19", "2026-11-26", "2026-12-03",
                                       "2026-12-10", "2026-12-17"}));
}

// The "Frequency" column of KMyMoney 5.1.3 says "Monthly" of code 256 with the multiplier 1 or none, and
// "Every three months" with the multiplier 3.
TEST(KMyMoney, takesTheUnitOfACodeAndTheMultiplier) {
    const std::pair<const char*, const char*> rows[] = {
        {"occurence=\"30\" occurenceMultiplier=\"3\"", "2026-11-24"},
        {"occurence=\"8\" occurenceMultiplier=\"3\"", "2026-12-12"},
        {"occurence=\"126\" occurenceMultiplier=\"1\"", "2026-11-28"},
        {"occurence=\"256\" occurenceMultiplier=\"1\"", "2026-12-21"},
        {"occurence=\"256\"", "2026-12-21"},
        {"occurence=\"4096\" occurenceMultiplier=\"3\"", "2027-02-21"},
        {"occurence=\"2048\" occurenceMultiplier=\"1\"", "2027-11-21"},
    };
    for (const auto& [step, second] : rows) {
        std::string attributes = rent;
        const std::string old = "occurence=\"32\" occurenceMultiplier=\"1\"";
        attributes.replace(attributes.find(old), old.size(), step);
        const Reading reading = readKMyMoney(fileWith(attributes), year);
        ASSERT_EQ(reading.fault, "");
        EXPECT_EQ(textOfDay(reading.plans.at(0).occurrences.at(1).day), second) << step;
    }
}

TEST(KMyMoney, goesOnAsTheProgramDoesAfterSkipAndEnter) {
    const Reading before = read("plans.xml", year);
    const Reading after = read("after-skip-and-enter.xml", year);
    ASSERT_EQ(after.fault, "");
    ASSERT_EQ(after.plans.size(), before.plans.size());
    for (const Plan& plan : before.plans) {
        SCOPED_TRACE(plan.name);
        std::vector<std::string> expected = nominalsOf(plan);
        const bool isPaidAhead = plan.name == "Paid one ahead";
        if (plan.name == "Rent" || plan.name == "Weekend before" || isPaidAhead)
            expected.erase(expected.begin(), expected.begin() + (isPaidAhead ? 2 : 1));
        EXPECT_EQ(nominalsOf(planOf(after, plan.key)), expected);
    }
}

TEST(KMyMoney, seesAnImportEnterASchedule) {
    const Reading after = read("after-import.xml", month);
    ASSERT_EQ(after.fault, "");
    EXPECT_EQ(stateOf(planOf(after, "SCH000007")), "finished");
}

TEST(KMyMoney, namesACategoryOnlyWhereThereIsOne) {
    const Reading reading = read("plans.kmy", month);
    EXPECT_EQ(planOf(reading, "SCH000010").category, "Fun & <Games>");
    EXPECT_EQ(planOf(reading, "SCH000013").category, "Salary");
    EXPECT_EQ(planOf(reading, "SCH000014").category, "") << "a transfer";
    EXPECT_EQ(planOf(reading, "SCH000015").category, "") << "three categories";
    const Reading nested = readKMyMoney(fileWith(rent), month);
    EXPECT_EQ(nested.fault, "");
    EXPECT_EQ(nested.plans.at(0).category, "Home:Rent");
}

TEST(KMyMoney, takesTheAmountInTheAccountsOwnCurrency) {
    const Reading reading = readKMyMoney(fileWith(rent), month);
    EXPECT_EQ(reading.plans.at(0).amount, (Amount{{-950, 2}, "EUR"}));
    const auto amountOf = [](const std::string& file) {
        return readKMyMoney(file, month).plans.at(0).amount;
    };
    EXPECT_EQ(amountOf(replaced(fileWith(rent), "saf=\"100\"", "saf=\"1000\"")), (Amount{{-9500, 3}, "EUR"}));
    EXPECT_EQ(amountOf(replaced(fileWith(rent), "-19/2", "-19/3")), std::nullopt);
    EXPECT_EQ(amountOf(replaced(fileWith(rent), "-19/2", "")), std::nullopt);
    EXPECT_EQ(amountOf(replaced(fileWith(rent), "\"A1\" shares", "\"A9\" shares")), std::nullopt);
    const std::string base =
        replaced(fileWith(rent), "<SCHEDULES>",
                 "<KEYVALUEPAIRS><PAIR key=\"kmm-baseCurrency\" value=\"EUR\"/></KEYVALUEPAIRS>"
                 "<SCHEDULES>");
    EXPECT_EQ(amountOf(replaced(base, "name=\"Cash\" parentaccount=\"AStd::Asset\" currency=\"EUR\"",
                                "name=\"Cash\" parentaccount=\"AStd::Asset\"")),
              (Amount{{-950, 2}, "EUR"}));
}

TEST(KMyMoney, warnsOfANewerFormat) {
    const Reading reading =
        readKMyMoney(replaced(fileWith(rent), "FIXVERSION id=\"5\"", "FIXVERSION id=\"6\""), month);
    EXPECT_EQ(reading.plans.size(), 1U);
    EXPECT_EQ(reading.warnings,
              std::vector<std::string>{
                  "was saved by a newer version of KMyMoney (format 6; 5 is the newest known)"});
}

TEST(KMyMoney, readsNothingOfABrokenFile) {
    const std::string file = fileWith(rent);
    const auto with = [&file](const std::string& part, const std::string& other) {
        return replaced(file, part, other);
    };
    const std::string gzip = packed(file);
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"empty", "", "is empty"},
        {"packed nothing", packed(""), "is empty"},
        {"other text", "2026-11-21 rent\n", "is no file of KMyMoney"},
        {"a database", std::string("SQLite format 3\0...", 19), "is a database of another kind (SQLite)"},
        {"encrypted", "\x85\x01\x0c\x03", "is encrypted"},
        {"encrypted, as text", "-----BEGIN PGP MESSAGE-----\n", "is encrypted"},
        {"packed, cut off", gzip.substr(0, gzip.size() - 1), "is cut off: its packed text has no end"},
        {"packed, damaged", replaced(gzip, gzip.substr(40, 4), "\x01\x02\x03\x04"),
         "is damaged: its packed text cannot be unpacked"},
        {"another root", "<gnc-v2/>", "is no file of KMyMoney: it begins with <gnc-v2>"},
        {"id missing", with("id=\"SCH000001\"", ""), "is damaged at line 7: a schedule has no id"},
        {"two schedules of an id", with("</SCHEDULES>", "<SCHEDULED_TX " + rent + "/></SCHEDULES>"),
         "is damaged: two schedules have the id SCH000001"},
        {"step unknown", with("occurence=\"32\"", "occurence=\"33\""),
         "is damaged at line 7: \"occurence\" is none of the known"},
        {"step missing", with("occurence=\"32\"", ""),
         "is damaged at line 7: \"occurence\" is none of the known"},
        {"multiplier no number", with("occurenceMultiplier=\"1\"", "occurenceMultiplier=\"x\""),
         "is damaged at line 7: \"occurenceMultiplier\" is no whole number"},
        {"next day impossible", fileWith(rent, "2026-11-31"), "is damaged at line 8: \"postdate\" is no day"},
        {"last payment impossible", with("2026-10-21", "21.10.2026"),
         "is damaged at line 7: \"lastPayment\" is no day"},
        {"paid ahead on no day",
         with("</TRANSACTION>", "</TRANSACTION><PAYMENTS><PAYMENT date=\"x\"/></PAYMENTS>"),
         "is damaged at line 8: \"date\" is no day"},
        {"amount no fraction", with("-19/2", "-9.50"), "is damaged at line 8: \"shares\" is no fraction"},
        {"an attribute twice", with("id=\"SCH000001\"", "id=\"a\" id=\"b\""),
         "is damaged at line 7: it is no well-formed XML"},
        {"declared entities",
         with("<!DOCTYPE KMYMONEY-FILE>", "<!DOCTYPE KMYMONEY-FILE [<!ENTITY a \"b\">]>"),
         "is damaged at line 2: its document type declares entities or elements"},
        {"an unknown entity", with("name=\"Rent\" type", "name=\"&rent;\" type"),
         "is damaged at line 7: it is no well-formed XML"},
        {"elements crossed", with("</SPLITS></TRANSACTION>", "</TRANSACTION></SPLITS>"),
         "is damaged at line 8: it is no well-formed XML"},
    };
    for (const auto& [name, bytes, fault] : cases) {
        const Reading reading = readKMyMoney(bytes, month);
        EXPECT_EQ(reading.fault, fault) << name;
        EXPECT_TRUE(reading.plans.empty()) << name;
    }
}

TEST(KMyMoney, readsNothingOfAFileThatIsCutOff) {
    const auto expectFaultAt = [](std::string_view whole, std::size_t length) {
        const Reading reading = readKMyMoney(whole.substr(0, length), month);
        EXPECT_NE(reading.fault, "") << length;
        EXPECT_TRUE(reading.plans.empty()) << length;
    };
    const std::string gzip = dataFile("kmymoney/plans.kmy");
    for (std::size_t length = 0; length < gzip.size(); length += 7)
        expectFaultAt(gzip, length);
    const std::string text = dataFile("kmymoney/plans.xml");
    const std::size_t end = text.rfind('>');
    for (std::size_t length = 0; length <= end; length += length + 200 < end ? 97 : 1)
        expectFaultAt(text, length);
    EXPECT_EQ(readKMyMoney(std::string_view(text).substr(0, end - 20), month).fault,
              "is cut off at line 379");
}

TEST(KMyMoney, boundsTheNumberOfSchedules) {
    std::string schedules;
    for (int id = 1; id <= 10'001; ++id)
        schedules += "<SCHEDULED_TX occurence=\"1\" id=\"" + std::to_string(id) + "\"/>";
    const Reading reading =
        readKMyMoney("<KMYMONEY-FILE><SCHEDULES>" + schedules + "</SCHEDULES></KMYMONEY-FILE>", month);
    EXPECT_EQ(reading.fault, "is damaged at line 1: it has more than 10000 schedules");
    EXPECT_TRUE(reading.plans.empty());
}

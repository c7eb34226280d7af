#include "bridge/sources/HomeBank.h"

#include "bridge/sources/Packed.h"
#include "bridge/sources/Table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace bridge;
using namespace bridge_test;

namespace {

const Day today = *dayOfText("2026-11-21");
const Period month{today, today + std::chrono::days(31)};
const Period year{today, today + std::chrono::days(365)};

Reading read(const std::string& name, const Period& period) {
    return readHomeBank(dataFile("homebank/" + name), period);
}

const Plan* planOf(const Reading& reading, const std::string& key) {
    const auto found = std::ranges::find(reading.plans, key, &Plan::key);
    return found == reading.plans.end() ? nullptr : &*found;
}

const Plan* planNamed(const Reading& reading, const std::string& name) {
    const auto found = std::ranges::find(reading.plans, name, &Plan::name);
    return found == reading.plans.end() ? nullptr : &*found;
}

long lateOf(const Plan& plan) {
    return std::ranges::count_if(plan.occurrences,
                                 [](const Occurrence& occurrence) { return occurrence.day <= today; });
}

long lateIn(const std::string& cell) {
    if (cell == "+10")
        return 11;
    return cell.empty() ? 0 : std::stol(cell);
}

std::vector<std::string> daysOf(const Plan& plan) {
    std::vector<std::string> days;
    for (const Occurrence& occurrence : plan.occurrences)
        days.push_back(textOfDay(occurrence.day));
    return days;
}

void expectTexts(const Plan& plan, const Row& row) {
    EXPECT_EQ(plan.name, row.at("memo").empty() ? row.at("payee") : row.at("memo"));
    EXPECT_EQ(plan.payee, row.at("payee"));
    EXPECT_EQ(plan.category, row.at("category") == "- split -" ? "" : row.at("category"));
}

void expectAmount(const Plan& plan, const Row& row) {
    if (row.at("amount_text") == "(empty)") {
        EXPECT_FALSE(plan.amount);
        return;
    }
    ASSERT_TRUE(plan.amount);
    EXPECT_EQ(plan.amount->number.units, shownUnits(row.at("amount_text")));
    EXPECT_EQ(plan.amount->currency, shownCurrency(row.at("amount_text")));
}

Direction directionIn(const Row& row) {
    if (row.at("direction").starts_with("transfer"))
        return Direction::Transfer;
    return row.at("direction") == "income" ? Direction::Income : Direction::Expense;
}

// A file with one plan, whose attributes are given.
std::string fileWith(const std::string& plan, const std::string& version = "1.3999999999999999") {
    return "<?xml version=\"1.0\"?>\n<homebank v=\"" + version +
           "\" d=\"050602\">\n<properties title=\"x\" curr=\"1\"/>\n"
           "<cur key=\"1\" iso=\"EUR\" symb=\"€\" frac=\"2\"/>\n<account key=\"1\" curr=\"1\" "
           "name=\"Cash\"/>\n"
           "<fav " +
           plan + "/>\n</homebank>\n";
}

const std::string rent = "key=\"1\" amount=\"-950\" account=\"1\" flags=\"4\" wording=\"Rent\" "
                         "nextdate=\"739941\" every=\"1\" unit=\"2\"";

} // namespace

TEST(HomeBank, listsWhatTheProgramLists) {
    const Reading nearby = read("plans.xhb", month);
    const Reading far = read("plans.xhb", year);
    ASSERT_EQ(nearby.fault, "");
    EXPECT_TRUE(nearby.warnings.empty());
    std::set<std::string> keys;
    for (const Row& row : tableOf("homebank/due.tsv")) {
        SCOPED_TRACE(row.at("fav_key") + " " + row.at("direction"));
        keys.insert(row.at("fav_key"));
        const Plan* const plan = planOf(far, row.at("fav_key"));
        ASSERT_TRUE(plan);
        expectTexts(*plan, row);
        EXPECT_EQ(plan->direction, directionIn(row));
        EXPECT_EQ(daysOf(*plan).front(), row.at("next_date"));
        EXPECT_EQ(lateOf(*plan), lateIn(row.at("late_column")));
        EXPECT_EQ(plan->isSingle, row.at("still_column") == "1");
        // The second line of a transfer is the same plan seen from the other account.
        if (row.at("direction") != "transfer in") {
            expectAmount(*plan, row);
            EXPECT_EQ(plan->account, row.at("account"));
        }
        const Plan* const soon = planOf(nearby, row.at("fav_key"));
        const bool isSoon = row.at("next_date") <= textOfDay(month.last);
        EXPECT_EQ(soon->occurrences.empty(), !isSoon);
        EXPECT_EQ(lateOf(*soon), lateOf(*plan));
    }
    EXPECT_EQ(nearby.plans.size(), keys.size()) << "a transfer is one plan, and templates are none";
}

TEST(HomeBank, knowsTheDaysOfLateAndLaterOccurrences) {
    const Reading reading = read("plans.xhb", month);
    using Days = std::vector<std::string>;
    EXPECT_EQ(daysOf(*planOf(reading, "1")), (Days{"2026-10-01", "2026-11-01", "2026-12-01"}));
    EXPECT_EQ(daysOf(*planOf(reading, "15")), (Days{"2026-09-15", "2026-10-15", "2026-11-15"}))
        << "three are left";
    EXPECT_EQ(daysOf(*planOf(reading, "18")), (Days{"2026-11-19", "2026-11-29", "2026-12-09", "2026-12-19"}));
    EXPECT_EQ(daysOf(*planOf(reading, "3")), (Days{"2026-11-20", "2026-12-04", "2026-12-18"}));
    EXPECT_EQ(daysOf(*planOf(reading, "9")), (Days{"2026-11-28", "2026-12-07", "2026-12-14", "2026-12-21"}))
        << "the Saturday that is stored stays, later ones are skipped to Monday";
    EXPECT_EQ(daysOf(*planOf(reading, "25")),
              (Days{"2026-06-12", "2026-06-19", "2026-06-26", "2026-07-03", "2026-07-10", "2026-07-17",
                    "2026-07-24", "2026-07-31", "2026-08-07", "2026-08-14", "2026-08-21", "2026-11-27",
                    "2026-12-04", "2026-12-11", "2026-12-18"}))
        << "eleven are counted";
    EXPECT_EQ(daysOf(*planOf(read("plans.xhb", year), "6"))[3], "2027-02-28") << "30 November with a gap";
    EXPECT_EQ(daysOf(*planOf(read("plans.xhb", year), "6"))[4], "2027-03-31") << "31st again";
}

TEST(HomeBank, goesOnAsTheProgramDoesAfterSkip) {
    const Reading before = read("before-skip.xhb", year);
    const Reading after = read("after-skip.xhb", year);
    ASSERT_EQ(before.fault + after.fault, "");
    for (const Row& row : tableOf("homebank/skip.tsv")) {
        SCOPED_TRACE(row.at("memo"));
        const Plan* const plan = planNamed(before, row.at("memo"));
        const Plan* const later = planNamed(after, row.at("memo"));
        ASSERT_TRUE(plan);
        EXPECT_EQ(daysOf(*plan).front(), row.at("next_before"));
        EXPECT_EQ(lateOf(*plan), lateIn(row.at("late_before")));
        EXPECT_EQ(plan->isSingle, row.at("still_before") == "1");
        if (row.at("next_after_skip").starts_with("(gone")) {
            EXPECT_FALSE(later);
            continue;
        }
        ASSERT_TRUE(later);
        EXPECT_EQ(daysOf(*later).front(), row.at("next_after_skip"));
        EXPECT_EQ(later->isSingle, row.at("note") == "1 left");
        std::vector<std::string> following = daysOf(*plan);
        following.erase(following.begin());
        EXPECT_EQ(following, daysOf(*later)) << "one step and those after it";
    }
    EXPECT_EQ(daysOf(*planNamed(after, "m12 w1"))[1], "2027-01-12");
    EXPECT_EQ(daysOf(*planNamed(after, "m12 w3"))[1], "2027-01-14");
}

TEST(HomeBank, seesWhatWasMadeAndWhatWasSwitchedOff) {
    const Reading reading = read("made-and-switched-off.xhb", month);
    const Plan* const made = planOf(reading, "28");
    ASSERT_TRUE(made);
    EXPECT_EQ(made->name, "GUI made");
    EXPECT_EQ(made->amount, (Amount{{-1250, 2}, "EUR"}));
    EXPECT_EQ(made->account, "Savings");
    EXPECT_FALSE(planOf(reading, "7")) << "switched off";
    EXPECT_TRUE(planOf(reading, "1")) << "edited";
}

TEST(HomeBank, readsTransfersOfOlderVersions) {
    const std::string old = rent + " paymode=\"5\"";
    EXPECT_EQ(readHomeBank(fileWith(old, "1.3"), month).plans[0].direction, Direction::Transfer);
    EXPECT_EQ(readHomeBank(fileWith(old), month).plans[0].direction, Direction::Expense);
}

TEST(HomeBank, comparesVersionsAsNumbers) {
    for (const char* version : {"1.4", "1.3999999999999999", "1.40000000000000002", "1.3"})
        EXPECT_EQ(readHomeBank(fileWith(rent, version), month).fault, "") << version;
    const auto faultOf = [](const char* version) {
        return readHomeBank(fileWith(rent, version), month).fault;
    };
    EXPECT_EQ(faultOf("1.5"),
              "was saved by a newer version of HomeBank (1.5; 1.4 is the newest that can be read)");
    EXPECT_EQ(faultOf("1.6000000000000001"),
              "was saved by a newer version of HomeBank (1.6; 1.4 is the newest that can be read)");
    EXPECT_EQ(faultOf("2"),
              "was saved by a newer version of HomeBank (2.0; 1.4 is the newest that can be read)");
    const Reading old = readHomeBank(fileWith(rent, "0.6"), month);
    ASSERT_EQ(old.warnings.size(), 1U);
    EXPECT_TRUE(old.warnings[0].starts_with("was saved by an old version of HomeBank (0.6)"));
}

TEST(HomeBank, readsNothingOfABrokenFile) {
    const std::string file = fileWith(rent);
    const auto with = [&file](const std::string& part, const std::string& other) {
        return replaced(file, part, other);
    };
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"empty", "", "is empty"},
        {"only blanks", " \n ", "is no file of HomeBank"},
        {"other text", "key,amount\n", "is no file of HomeBank"},
        {"packed", packed(file), "is no file of HomeBank"},
        {"a database", std::string("SQLite format 3\0...", 19), "is a database of another kind (SQLite)"},
        {"encrypted", "-----BEGIN PGP MESSAGE-----\n", "is encrypted"},
        {"another root", "<gnc-v2/>", "is no file of HomeBank: it begins with <gnc-v2>"},
        {"no version", with("v=\"1.3999999999999999\"", ""),
         "is damaged at line 2: its version is no number"},
        {"key missing", with("key=\"1\" amount", "amount"), "is damaged at line 6: a plan has no key"},
        {"key no number", with("key=\"1\" amount", "key=\"one\" amount"),
         "is damaged at line 6: \"key\" is no whole number"},
        {"key too large", with("key=\"1\" amount", "key=\"99999999999999999999\" amount"),
         "is damaged at line 6: \"key\" is no whole number"},
        {"amount no number", with("-950", "9,50"), "is damaged at line 6: \"amount\" is no number"},
        {"amount infinite", with("-950", "-inf"), "is damaged at line 6: \"amount\" is no number"},
        {"day no number", with("739941", "2026-11-21"),
         "is damaged at line 6: \"nextdate\" is no whole number"},
        {"day after the year 9999", with("739941", "3652060"),
         "is damaged at line 6: \"nextdate\" is no day"},
        {"day negative", with("739941", "-1"), "is damaged at line 6: \"nextdate\" is no day"},
        {"unit unknown", with("unit=\"2\"", "unit=\"4\""),
         "is damaged at line 6: \"unit\" is none of the four"},
        {"flags no number", with("flags=\"4\"", "flags=\"4x\""),
         "is damaged at line 6: \"flags\" is no whole number"},
        {"two plans of a key", with("</homebank>", "<fav " + rent + "/></homebank>"),
         "is damaged: two plans have the key 1"},
        {"an attribute twice", with("key=\"1\" amount", "key=\"1\" key=\"2\" amount"),
         "is damaged at line 6: it is no well-formed XML"},
        {"an unknown entity", with("Rent", "&rent;"), "is damaged at line 6: it is no well-formed XML"},
        {"declared entities", with("<homebank", "<!DOCTYPE homebank [<!ENTITY r \"Rent\">]>\n<homebank"),
         "is damaged at line 2: its document type declares entities or elements"},
        {"no UTF-8", with("Rent", "Re\xFFnt"), "is damaged at line 1: it is no well-formed XML"},
        {"more after the root", file + "<homebank/>", "is damaged at line 8: it is no well-formed XML"},
    };
    for (const auto& [name, bytes, fault] : cases) {
        const Reading reading = readHomeBank(bytes, month);
        EXPECT_EQ(reading.fault, fault) << name;
        EXPECT_TRUE(reading.plans.empty()) << name;
    }
}

TEST(HomeBank, readsNothingOfAFileThatIsCutOff) {
    const std::string whole = dataFile("homebank/plans.xhb");
    const std::size_t end = whole.rfind('>');
    for (std::size_t length = 0; length <= end; length += length + 400 < end ? 37 : 1) {
        const Reading reading = readHomeBank(std::string_view(whole).substr(0, length), month);
        EXPECT_NE(reading.fault, "") << length;
        EXPECT_TRUE(reading.plans.empty()) << length;
    }
    EXPECT_EQ(readHomeBank(std::string_view(whole).substr(0, end - 20), month).fault,
              "is cut off at line 55");
}

TEST(HomeBank, countsTodayAmongTheElevenThatAreLate) {
    const std::string daily =
        replaced(rent, "nextdate=\"739941\" every=\"1\" unit=\"2\"", "nextdate=\"739930\" every=\"1\"");
    const Plan plan = readHomeBank(fileWith(daily), month).plans.at(0);
    ASSERT_EQ(lateOf(plan), 11);
    EXPECT_EQ(daysOf(plan)[10], "2026-11-20");
    EXPECT_EQ(daysOf(plan)[11], "2026-11-22");
}

TEST(HomeBank, knowsALimitByItsFlagOnly) {
    EXPECT_FALSE(readHomeBank(fileWith(rent + " limit=\"1\""), month).plans.at(0).isSingle);
    const std::string flagged = replaced(rent, "flags=\"4\"", "flags=\"132\"");
    EXPECT_TRUE(readHomeBank(fileWith(flagged + " limit=\"1\""), month).plans.at(0).isSingle);
}

TEST(HomeBank, isNotKeptBusyByAPlan) {
    const auto daysWith = [](const std::string& rule) {
        return daysOf(
            readHomeBank(fileWith(replaced(rent, "nextdate=\"739941\" every=\"1\" unit=\"2\"", rule)), month)
                .plans[0]);
    };
    EXPECT_EQ(daysWith("nextdate=\"1\" every=\"1\"").size(), 11U) << "daily since the year 1";
    using Days = std::vector<std::string>;
    EXPECT_EQ(daysWith("nextdate=\"739941\" every=\"9223372036854775807\" unit=\"3\""), Days{"2026-11-21"});
    EXPECT_EQ(daysWith("nextdate=\"739941\" every=\"-1\""), Days{"2026-11-21"});
    EXPECT_EQ(daysWith("nextdate=\"739941\""), Days{"2026-11-21"});
    EXPECT_EQ(daysWith("every=\"1\""), Days{}) << "no day is written";
}

TEST(HomeBank, boundsTheNumberOfPlans) {
    std::string plans;
    for (int key = 1; key <= 10'001; ++key)
        plans += "<fav key=\"" + std::to_string(key) + "\" flags=\"4\"/>";
    const Reading reading = readHomeBank("<homebank v=\"1.4\">" + plans + "</homebank>", month);
    EXPECT_EQ(reading.fault, "is damaged at line 1: it has more than 10000 plans");
    EXPECT_TRUE(reading.plans.empty());
}

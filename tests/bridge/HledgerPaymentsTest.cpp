#include "bridge/CommandTest.h"
#include "bridge/Configuration.h"
#include "bridge/KnownPrograms.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <filesystem>

namespace bridge {

namespace {

using Json = nlohmann::json;
using Lines = std::vector<std::string>;
using testing::HasSubstr;

const std::string journalName = "main.journal";
const std::string directives = "decimal-mark ,\ncommodity 1.000,00 EUR\naccount assets:bank\n";
const std::string rentRule = "~ monthly from 2026-02-01 to 2026-04-01  Landlord | rent  ; plan: rent\n"
                             "    expenses:rent  1.950,00 EUR\n    assets:bank\n\n";
const std::string yearRule = "~ 2026-03-12  Insurer\n    expenses:car  81,5 EUR\n    assets:bank\n\n";

// The installed hledger, and a journal in the home.
class HledgerPaymentsTest : public CommandTest {
protected:
    HledgerPaymentsTest() { used = knownPrograms(); }

    void connectJournal(const std::string& rules) {
        rules_ = rules;
        const std::string journal = writeHome(journalName, directives + rules);
        ASSERT_EQ(run({"connect", journal}), 0) << err;
        const auto files = std::get<ConfigurationFile>(readConfiguration()).configuration.files;
        ASSERT_EQ(files.size(), 1U);
        paidName_ = ".local/state/korvel-today/paid-" + files[0].id + ".journal";
        ASSERT_EQ(run({"update"}), 0) << err;
    }

    // As the user does, by the line that status tells.
    void include() {
        ASSERT_EQ(run({"status", "--json"}), 0) << err;
        const std::string path = Json::parse(out)["files"][0]["to_include"];
        writeHome(journalName, directives + rules_ + "include " + path + "\n");
        ASSERT_EQ(run({"update"}), 0) << err;
    }

    void pay(std::size_t record) {
        act(readRecords().at(record), 1);
        ASSERT_EQ(run({"update"}), 0) << err;
    }

    [[nodiscard]] std::string paid() const { return readHome(paidName_); }

    // What hledger prints with these arguments of the journal, without its columns.
    [[nodiscard]] std::string hledger(const std::string& arguments) const {
        const std::string command = "LC_ALL=C.UTF-8 hledger -f '" + homePath(journalName) + "' " + arguments;
        FILE* pipe = popen(command.c_str(), "r");
        std::string text;
        for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe))
            if (byte != ' ' || !text.ends_with(' '))
                text += static_cast<char>(byte);
        EXPECT_EQ(pclose(pipe), 0) << command;
        return text;
    }

    [[nodiscard]] std::string pending() {
        EXPECT_EQ(run({"pending"}), 0) << err;
        return out;
    }

    std::string paidName_;
    std::string rules_;
};

const std::string rentOfFebruary = "2026-03-10 * Landlord | rent\n"
                                   " ; plan: rent, paid-of: 2026-02-01\n"
                                   " expenses:rent 1.950,00 EUR\n"
                                   " assets:bank -1.950,00 EUR\n\n";

} // namespace

TEST_F(HledgerPaymentsTest, statusTellsTheLineToIncludeUntilItIs) {
    connectJournal(rentRule);
    ASSERT_EQ(run({"status"}), 0) << err;
    EXPECT_THAT(out, HasSubstr("at its end: include " + homePath(paidName_) + "\n"));
    include();
    ASSERT_EQ(run({"status"}), 0) << err;
    EXPECT_EQ(out.find("include"), out.npos) << out;
}

// For whoever watches files; our own journal is none of them, as each update may change it.
TEST_F(HledgerPaymentsTest, statusNamesWhatAJournalIncludes) {
    const auto includes = [&] {
        EXPECT_EQ(run({"status", "--json"}), 0) << err;
        return Json::parse(out)["files"][0]["includes"];
    };
    const std::string rules = writeHome("rules/rent.journal", rentRule);
    connectJournal("include rules/*.journal\n");
    include();
    EXPECT_EQ(includes(), Json{rules});
    // Where the fault is, is where it will be mended.
    writeHome("rules/rent.journal", "~ no period\n");
    EXPECT_EQ(run({"update"}), 1);
    EXPECT_EQ(includes(), Json{rules});
    writeHome(journalName, directives);
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(includes(), Json::array());
}

TEST_F(HledgerPaymentsTest, whatIsPaidIsEnteredOnce) {
    connectJournal(rentRule + yearRule);
    include();
    ASSERT_EQ(shown(), (Lines{"rent 2026-02-01", "rent 2026-03-01", shown().at(2)}));
    const std::string before = paid();
    pay(0);
    EXPECT_EQ(shown().size(), 2U);
    EXPECT_EQ(hledger("print"), rentOfFebruary);
    EXPECT_EQ(pending(), "");
    EXPECT_EQ(countOpen(), 0U);
    EXPECT_EQ(readHome(paidName_ + "~"), before);
    const std::string after = paid();
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown().size(), 2U);
    EXPECT_EQ(paid(), after);
    // A rule without a tag is known by its checksum.
    pay(1);
    EXPECT_THAT(hledger("print desc:Insurer"), HasSubstr("expenses:car 81,50 EUR\n"));
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"rent 2026-03-01"}));
}

TEST_F(HledgerPaymentsTest, whatIsPaidBeforeTheIncludeIsPendingAndEnteredByIt) {
    connectJournal(rentRule);
    const std::string before = paid();
    pay(0);
    EXPECT_THAT(pending(), HasSubstr("2026-02-01  Landlord | rent"));
    EXPECT_EQ(paid(), before);
    include();
    EXPECT_EQ(hledger("print"), rentOfFebruary);
    EXPECT_EQ(pending(), "");
}

TEST_F(HledgerPaymentsTest, undoTakesAPaymentOut) {
    connectJournal(rentRule);
    include();
    const std::string before = paid();
    pay(0);
    pay(0);
    // Entered, and read since.
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(shown(), Lines());
    ASSERT_EQ(run({"undo"}), 0) << err;
    EXPECT_EQ(out, "taken back: paid  2026-03-01  Landlord | rent\n");
    EXPECT_EQ(shown(), (Lines{"rent 2026-03-01"}));
    EXPECT_EQ(hledger("print"), rentOfFebruary);
    ASSERT_EQ(run({"undo"}), 0) << err;
    EXPECT_EQ(shown(), (Lines{"rent 2026-02-01", "rent 2026-03-01"}));
    EXPECT_EQ(paid(), before);
    EXPECT_EQ(run({"undo"}), 1);
    EXPECT_EQ(err, "korvel-today-bridge: there is nothing to take back\n");
    pay(0);
    EXPECT_EQ(hledger("print"), rentOfFebruary);
}

TEST_F(HledgerPaymentsTest, whatHledgerRefusesIsTakenBackAndStaysPending) {
    connectJournal(yearRule);
    include();
    // Wrong as soon as anything is paid on that day.
    writeHome(journalName, directives + "include " + homePath(paidName_) + "\n" + yearRule +
                               "2026-03-10 balance\n    assets:bank  0 EUR = 0 EUR\n    equity\n");
    const std::string before = paid();
    act(readRecords().at(0), 1);
    EXPECT_EQ(run({"update"}), 1);
    EXPECT_THAT(err, HasSubstr("the payment of “Insurer” of 2026-03-12 is not entered: " +
                               homePath(journalName) + " is refused by hledger: "));
    EXPECT_EQ(paid(), before);
    EXPECT_THAT(pending(), HasSubstr("2026-03-12  Insurer"));
    EXPECT_EQ(shown(), Lines());
    // Once is enough.
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_THAT(pending(), HasSubstr("2026-03-12  Insurer"));
    ASSERT_EQ(run({"undo"}), 0) << err;
    EXPECT_EQ(shown().size(), 1U);
}

// The action is taken and in the journal, and its process has ended before the database knew that.
TEST_F(HledgerPaymentsTest, whatAnEndedRunHasEnteredIsNotEnteredAgain) {
    connectJournal(rentRule);
    pay(0);
    const std::string empty = paid();
    const std::string entered = empty +
                                "\n2026-03-10 * Landlord | rent\n    ; plan: rent, paid-of: 2026-02-01\n"
                                "    expenses:rent  1950.00 EUR\n    assets:bank  -1950.00 EUR\n";
    writeHome(paidName_, entered);
    ASSERT_EQ(countOpen(), 1U);
    include();
    EXPECT_EQ(paid(), entered);
    EXPECT_EQ(countOpen(), 0U);
    EXPECT_EQ(shown(), (Lines{"rent 2026-03-01"}));
    // What was not checked is taken back first, whatever it is.
    writeHome(paidName_, entered + "\n2026-03-10 * cut off\n    assets:bank  5 EUR\n");
    writeHome(paidName_ + ".unchecked", entered);
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(paid(), entered);
}

TEST_F(HledgerPaymentsTest, postingsAreWrittenAsTheRuleHasThem) {
    connectJournal("~ 2026-03-12  Exchange  ; plan: x\n"
                   "    assets:dollar  $10,5 @ 0,9 EUR\n"
                   "    (budget:food)  3 \"A 1\"\n"
                   "    [budget:a]  1 EUR\n"
                   "    [budget:b]\n"
                   "    assets:bank\n");
    include();
    pay(0);
    EXPECT_THAT(paid(), HasSubstr("    assets:dollar  $10.5 @ 0.9 EUR\n"
                                  "    (budget:food)  3 \"A 1\"\n"
                                  "    [budget:a]  1.00 EUR\n"
                                  "    [budget:b]  -1.00 EUR\n"
                                  "    assets:bank  -9.45 EUR\n"));
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(shown(), Lines());
}

} // namespace bridge

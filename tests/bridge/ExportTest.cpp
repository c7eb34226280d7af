#include "bridge/CommandTest.h"
#include "bridge/KnownPrograms.h"
#include "bridge/Ofx.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace bridge {

namespace {

using testing::HasSubstr;

class ExportTest : public CommandTest {
protected:
    ExportTest() {
        used = knownPrograms();
        clock.set(exchange::utc(2026, 11, 21, 12));
        std::filesystem::copy_file(KORVEL_TEST_DATA "/bridge/kmymoney/plans.kmy", file_);
    }

    // Pays the overdue record of a plan.
    void pay(const std::string& plan) {
        for (const auto& record : readRecords())
            if (record.find("planpk")->string()->ends_with(plan)) {
                act(record, 1);
                return;
            }
        FAIL() << "no record of " << plan;
    }

    const std::string file_ = homePath("Bills.kmy");
};

} // namespace

TEST_F(ExportTest, aPendingPaymentIsALine) {
    ASSERT_EQ(run({"connect", file_}), 0) << err;
    ASSERT_EQ(run({"update"}), 0) << err;
    EXPECT_EQ(run({"export", file_}), 1);
    EXPECT_EQ(err, "korvel-today-bridge: " + file_ + " has nothing to export\n");
    pay("SCH000001");
    ASSERT_EQ(run({"update"}), 0) << err;
    ASSERT_EQ(run({"export", file_}), 0) << err;
    EXPECT_THAT(out, HasSubstr("<TRNTYPE>DEBIT<DTPOSTED>20261121120000<TRNAMT>-950.00<FITID>SCH000001-2026"));
    EXPECT_THAT(out, HasSubstr("<NAME>Landlord &amp; Söhne"));
    EXPECT_THAT(out, HasSubstr("<CURDEF>EUR\n"));
    const std::string first = out;
    ASSERT_EQ(run({"export", file_}), 0) << err;
    EXPECT_EQ(out, first);
}

TEST_F(ExportTest, takesConnectedFilesOfOneProgram) {
    EXPECT_EQ(run({"export", file_}), 1);
    EXPECT_EQ(err, "korvel-today-bridge: " + file_ + " is no connected file of KMyMoney\n");
}

TEST_F(ExportTest, accountsHaveStatementsOfTheirOwn) {
    const Day day = dayOf("2026-11-21");
    const std::string text = ofxOf({{"2", "B<", "", {{500, 2}, "EUR"}, day},
                                    {"1", "A", "X\n& Y", {{-1500, 0}, "JPY"}, day},
                                    {"3", "B<", "Z", {{-1, 2}, "EUR"}, day}});
    EXPECT_THAT(text, HasSubstr("<CURDEF>JPY\n<BANKACCTFROM><BANKID>1<ACCTID>A<ACCTTYPE>"));
    EXPECT_THAT(text, HasSubstr("<TRNAMT>-1500<FITID>1<NAME>X &amp; Y</STMTTRN>\n</BANKTRANLIST>"));
    EXPECT_THAT(text, HasSubstr("<ACCTID>B&lt;<ACCTTYPE>"));
    EXPECT_THAT(text,
                HasSubstr("<STMTTRN><TRNTYPE>CREDIT<DTPOSTED>20261121120000<TRNAMT>5.00<FITID>2</STMTTRN>\n"
                          "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20261121120000<TRNAMT>-0.01<FITID>3<NAME>Z"));
}

} // namespace bridge

#include "bridge/PaidJournal.h"

#include "bridge/BridgeTest.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace bridge {

namespace {

using PaidJournalTest = BridgeTest;

const Entry rent{"Rent | flat", "rent", {"expenses:rent  950.00 EUR", "assets:bank  -950.00 EUR"}};
const Entry shop{"", "100%", {"expenses:food  5.00 EUR", "assets:bank  -5.00 EUR"}};

std::string passes() {
    return "";
}

} // namespace

TEST_F(PaidJournalTest, aPaymentHasItsDaysAndTags) {
    EXPECT_EQ(textOfPayment(rent, dayOf("2026-03-01"), dayOf("2026-03-10")),
              "\n2026-03-10 * Rent | flat\n    ; plan: rent, paid-of: 2026-03-01\n"
              "    expenses:rent  950.00 EUR\n    assets:bank  -950.00 EUR\n");
    EXPECT_TRUE(
        textOfPayment(shop, dayOf("2026-03-01"), dayOf("2026-03-10")).starts_with("\n2026-03-10 *\n"));
}

TEST_F(PaidJournalTest, eachPaymentIsRemovedAlone) {
    const Day done = dayOf("2026-03-10");
    const std::string head(emptyPaidJournal);
    const std::string a = textOfPayment(rent, dayOf("2026-03-01"), done);
    const std::string b = textOfPayment(shop, dayOf("2026-03-01"), done);
    const std::string c = textOfPayment(rent, dayOf("2026-04-01"), done);
    const std::string all = head + a + b + c;
    EXPECT_EQ(withoutPayment(all, "rent", dayOf("2026-03-01")), head + b + c);
    EXPECT_EQ(withoutPayment(all, "100%25", dayOf("2026-03-01")), head + a + c);
    EXPECT_EQ(withoutPayment(all, "rent", dayOf("2026-04-01")), head + a + b);
    EXPECT_EQ(withoutPayment(all, "rent", dayOf("2026-05-01")), std::nullopt);
    EXPECT_EQ(withoutPayment(all, "ren", dayOf("2026-03-01")), std::nullopt);
    EXPECT_EQ(withoutPayment(head, "rent", dayOf("2026-03-01")), std::nullopt);
}

TEST_F(PaidJournalTest, aChangeKeepsTheTextBefore) {
    const std::string path = writeHome("paid.journal", "before");
    EXPECT_EQ(changePaidJournal(path, "after",
                                [&] {
                                    EXPECT_EQ(readHome("paid.journal"), "after");
                                    EXPECT_EQ(readHome("paid.journal.unchecked"), "before");
                                    return std::string();
                                }),
              "");
    EXPECT_EQ(readHome("paid.journal"), "after");
    EXPECT_EQ(readHome("paid.journal~"), "before");
    EXPECT_FALSE(std::filesystem::exists(path + ".unchecked"));
}

TEST_F(PaidJournalTest, aRefusedChangeIsTakenBack) {
    const std::string path = writeHome("paid.journal", "before");
    EXPECT_EQ(changePaidJournal(path, "after", [] { return std::string("no"); }), "no");
    EXPECT_EQ(readHome("paid.journal"), "before");
    EXPECT_FALSE(std::filesystem::exists(path + ".unchecked"));
    EXPECT_FALSE(std::filesystem::exists(path + "~"));
    EXPECT_NE(changePaidJournal(homePath("absent.journal"), "after", passes), "");
    EXPECT_FALSE(std::filesystem::exists(homePath("absent.journal")));
}

TEST_F(PaidJournalTest, whatAnEndedProcessLeftIsTakenBack) {
    const std::string path = homePath("paid.journal");
    EXPECT_EQ(preparePaidJournal(path), "");
    EXPECT_EQ(readHome("paid.journal"), emptyPaidJournal);
    writeHome("paid.journal", "after");
    EXPECT_EQ(preparePaidJournal(path), "");
    EXPECT_EQ(readHome("paid.journal"), "after");
    writeHome("paid.journal.unchecked", "before");
    EXPECT_EQ(preparePaidJournal(path), "");
    EXPECT_EQ(readHome("paid.journal"), "before");
    EXPECT_FALSE(std::filesystem::exists(path + ".unchecked"));
}

} // namespace bridge

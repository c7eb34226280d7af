#include "bridge/CommandTest.h"
#include "bridge/Database.h"
#include "bridge/FileCalls.h"
#include "bridge/Folders.h"
#include "bridge/PaidJournal.h"
#include "bridge/PlansText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace bridge {

namespace {

using Lines = std::vector<std::string>;

class StopTest : public CommandTest {
protected:
    // Plans, a feed of them, and three actions in the log, made anew.
    void arrange() {
        removeContainer();
        std::filesystem::remove_all(scratch + "/home");
        std::filesystem::create_directories(container);
        std::filesystem::create_directories(scratch + "/home");
        connect("A.plans", {planOf("1", {"2026-03-09", "2026-03-12"}), planOf("2", {"2026-03-11"})});
        ASSERT_EQ(run({"update"}), 0) << err;
        const auto records = readRecords();
        act(records[0], 1);
        act(records[1], 2, 3);
        act(records[2], 3);
        // What the user has paid and entered.
        writePlans("A.plans",
                   {planOf("1", {"2026-03-12"}), planOf("2", {"2026-03-11"}), planOf("3", {"2026-03-20"})});
    }

    // Runs a command in a process that ends before a call. Whether it came to its end, which is this status.
    bool runUntil(long call, const std::string& command, int atEnd = 0) {
        const pid_t child = fork();
        if (child == 0) {
            endBeforeCall(call);
            const int status = run({command});
            endBeforeCall(-1);
            _exit(status);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && (WEXITSTATUS(status) == atEnd || WEXITSTATUS(status) == 9))
            << "call " << call << ": status " << status;
        return WEXITSTATUS(status) == atEnd;
    }

    // Each action with its state.
    static Lines actions() {
        Lines lines;
        Database database;
        EXPECT_EQ(database.open(), "");
        for (const Action& action : database.openActions())
            lines.push_back(action.record.plan.substr(action.record.plan.rfind(':') + 1) + " " +
                            textOfDay(action.nominal) + " " +
                            std::to_string(static_cast<std::int64_t>(action.record.type)));
        return lines;
    }
};

// A program that takes payments as hledger does, and whose answers cost nothing. Its files end in ".book" and
// have two lines: what textOfPlans gives, and the path of a journal that they include.

Lines linesOf(const std::string& path) {
    std::ifstream file(path);
    Lines lines(2);
    for (std::string& line : lines)
        std::getline(file, line);
    return lines;
}

std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Entry entryOf(const Plan& plan) {
    return {plan.name, plan.key, {"expenses  5 EUR", "assets  -5 EUR"}};
}

Reading readBook(const std::string& path, const Period& /*period*/, const Configuration& /*configuration*/) {
    const Lines lines = linesOf(path);
    const std::string paid = textOf(lines[1]);
    Reading reading;
    reading.plans = plansOfText(lines[0]).value();
    for (Plan& plan : reading.plans) {
        plan.entry = entryOf(plan);
        std::erase_if(plan.occurrences, [&](const Occurrence& occurrence) {
            return withoutPayment(paid, plan.key, occurrence.nominal).has_value();
        });
    }
    return reading;
}

Lines filesOfBook(const std::string& path) {
    return {path, linesOf(path)[1]};
}

// It refuses payments of a plan that is called so.
std::string checkBook(const std::string& path) {
    return textOf(linesOf(path)[1]).find("refused") == std::string::npos ? "" : "is refused";
}

constexpr Program bookProgram[] = {
    {"book", "Book", "", ".book", "",
     [](std::string_view path, std::string_view /*start*/) { return path.ends_with(".book"); }, readBook,
     filesOfBook, checkBook},
};

class PaymentStopTest : public StopTest {
protected:
    PaymentStopTest() { used = bookProgram; }

    // Plans in a file that includes our journal, a feed of them, and payments of the first two records in the
    // log, made anew.
    void arrange(const std::vector<Plan>& plans) {
        removeContainer();
        std::filesystem::remove_all(scratch + "/home");
        std::filesystem::create_directories(container);
        const std::string file = writeHome("A.book", textOfPlans(plans) + "\n\n");
        ASSERT_EQ(run({"connect", file}), 0) << err;
        const auto configuration = std::get<ConfigurationFile>(readConfiguration()).configuration;
        journal = paidJournalFile(configuration.files.at(0).id);
        writeHome("A.book", textOfPlans(plans) + "\n" + journal + "\n");
        ASSERT_EQ(run({"update"}), 0) << err;
        const auto records = readRecords();
        act(records.at(0), 1);
        act(records.at(1), 1);
    }

    // Our journal with payments of these days of plan 1.
    static std::string journalWith(const Lines& days) {
        std::string text(emptyPaidJournal);
        for (const std::string& day : days)
            text += textOfPayment(entryOf(planOf("1", {})), dayOf(day), dayOf("2026-03-10"));
        return text;
    }

    [[nodiscard]] bool isWhole() const { return !std::filesystem::exists(journal + ".unchecked"); }

    std::string journal;
    const std::vector<Plan> plans{planOf("1", {"2026-03-09", "2026-03-12", "2026-03-19"})};
};

} // namespace

// However far the first run came: the next one counts every action once, and shows what follows from them.
TEST_F(StopTest, updateMayEndBeforeAnyCall) {
    long call = 0;
    for (bool isWhole = false; !isWhole; ++call) {
        SCOPED_TRACE("ended before call " + std::to_string(call));
        arrange();
        isWhole = runUntil(call, "update");
        ASSERT_EQ(run({"update"}), 0) << err;
        ASSERT_EQ(actions(), (Lines{"2 2026-03-11 2", "1 2026-03-12 3"}));
        ASSERT_EQ(shown(), (Lines{"2 2026-03-13", "3 2026-03-20"}));
        ASSERT_EQ(run({"undo"}), 0) << err;
        ASSERT_EQ(run({"undo"}), 0) << err;
        ASSERT_EQ(run({"undo"}), 1) << out;
        ASSERT_EQ(shown(), (Lines{"2 2026-03-11", "1 2026-03-12", "3 2026-03-20"}));
    }
    EXPECT_GT(call, 20); // the calls are seen
    RecordProperty("calls", static_cast<int>(call));
}

// The same of what is taken back: it is, or it is not.
TEST_F(StopTest, undoMayEndBeforeAnyCall) {
    long call = 0;
    int taken = 0;
    for (bool isWhole = false; !isWhole; ++call) {
        SCOPED_TRACE("ended before call " + std::to_string(call));
        arrange();
        ASSERT_EQ(run({"update"}), 0) << err;
        isWhole = runUntil(call, "undo");
        ASSERT_EQ(run({"update"}), 0) << err;
        if (actions() == Lines{"2 2026-03-11 2"}) {
            ++taken;
            ASSERT_EQ(shown(), (Lines{"1 2026-03-12", "2 2026-03-13", "3 2026-03-20"}));
        } else {
            ASSERT_EQ(actions(), (Lines{"2 2026-03-11 2", "1 2026-03-12 3"}));
            ASSERT_EQ(shown(), (Lines{"2 2026-03-13", "3 2026-03-20"}));
        }
    }
    EXPECT_GT(taken, 1);
    EXPECT_LT(taken, call);
}

// Payments are in the journal once each, whatever the database knew of them when the process ended.
TEST_F(PaymentStopTest, updateMayEndBeforeAnyCall) {
    long call = 0;
    for (bool isAtEnd = false; !isAtEnd; ++call) {
        SCOPED_TRACE("ended before call " + std::to_string(call));
        arrange(plans);
        isAtEnd = runUntil(call, "update");
        ASSERT_EQ(run({"update"}), 0) << err;
        ASSERT_EQ(textOf(journal), journalWith({"2026-03-09", "2026-03-12"}));
        ASSERT_TRUE(isWhole());
        ASSERT_EQ(actions(), Lines());
        ASSERT_EQ(shown(), (Lines{"1 2026-03-19"}));
        ASSERT_EQ(run({"undo"}), 0) << err;
        ASSERT_EQ(run({"undo"}), 0) << err;
        ASSERT_EQ(run({"undo"}), 1) << out;
        ASSERT_EQ(textOf(journal), journalWith({}));
        ASSERT_EQ(shown(), (Lines{"1 2026-03-09", "1 2026-03-12", "1 2026-03-19"}));
    }
    RecordProperty("calls", static_cast<int>(call));
    EXPECT_GT(call, 40);
}

// The last payment is taken back or is not, in journal and list alike; then it can be taken back or be done
// again.
TEST_F(PaymentStopTest, undoMayEndBeforeAnyCall) {
    long call = 0;
    int taken = 0;
    for (bool isAtEnd = false; !isAtEnd; ++call) {
        SCOPED_TRACE("ended before call " + std::to_string(call));
        arrange(plans);
        ASSERT_EQ(run({"update"}), 0) << err;
        isAtEnd = runUntil(call, "undo");
        ASSERT_EQ(run({"update"}), 0) << err;
        ASSERT_TRUE(isWhole());
        ASSERT_EQ(actions(), Lines());
        if (textOf(journal) == journalWith({"2026-03-09"})) {
            ++taken;
            ASSERT_EQ(shown(), (Lines{"1 2026-03-12", "1 2026-03-19"}));
            act(readRecords().at(0), 1);
            ASSERT_EQ(run({"update"}), 0) << err;
        }
        ASSERT_EQ(textOf(journal), journalWith({"2026-03-09", "2026-03-12"}));
        ASSERT_EQ(shown(), (Lines{"1 2026-03-19"}));
        ASSERT_EQ(run({"undo"}), 0) << err;
        ASSERT_EQ(textOf(journal), journalWith({"2026-03-09"}));
        ASSERT_EQ(shown(), (Lines{"1 2026-03-12", "1 2026-03-19"}));
    }
    EXPECT_GT(taken, 1);
    EXPECT_LT(taken, call);
}

// What the program refuses stays pending and out of the journal.
TEST_F(PaymentStopTest, updateWithARefusedPaymentMayEndBeforeAnyCall) {
    Plan refused = planOf("2", {"2026-03-10"});
    refused.name = "refused";
    long call = 0;
    for (bool isAtEnd = false; !isAtEnd; ++call) {
        SCOPED_TRACE("ended before call " + std::to_string(call));
        arrange({plans[0], refused});
        isAtEnd = runUntil(call, "update", 1);
        // It is told once.
        (void)run({"update"});
        ASSERT_EQ(run({"update"}), 0) << err;
        ASSERT_EQ(textOf(journal), journalWith({"2026-03-09"}));
        ASSERT_TRUE(isWhole());
        ASSERT_EQ(actions(), (Lines{"2 2026-03-10 1"}));
        ASSERT_EQ(shown(), (Lines{"1 2026-03-12", "1 2026-03-19"}));
    }
}

} // namespace bridge

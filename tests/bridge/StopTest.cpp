#include "bridge/CommandTest.h"
#include "bridge/Database.h"
#include "bridge/FileCalls.h"

#include <gtest/gtest.h>

#include <filesystem>
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

    // Runs a command in a process that ends before a call. Whether it came to its end.
    bool runUntil(long call, const std::string& command) {
        const pid_t child = fork();
        if (child == 0) {
            endBeforeCall(call);
            const int status = run({command});
            endBeforeCall(-1);
            _exit(status);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && (WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == 9))
            << "call " << call << ": status " << status;
        return WEXITSTATUS(status) == 0;
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

} // namespace bridge

#include "bridge/Overlay.h"

#include "bridge/BridgeTest.h"

#include <gtest/gtest.h>

namespace bridge {

namespace {

using exchange::ActionType;

std::vector<FilePlans> filesWith(const std::vector<Plan>& plans) {
    return {{"p:f:", "/f", true, dayOf("2026-04-10"), plans}};
}

Action action(ActionType type, const char* plan, const char* nominal, std::int64_t parameter = 0,
              const char* done = "2026-03-10") {
    static std::int64_t number = 0;
    return {++number,    {type, plan, 1, parameter}, dayOf(nominal), dayOf(nominal),
            dayOf(done), ActionState::Open};
}

// "PLAN NOMINAL SHOWN" for each occurrence.
std::vector<std::string> shown(const std::vector<FilePlans>& files, const std::vector<Action>& actions) {
    std::vector<std::string> lines;
    for (const ShownOccurrence& each : shownOccurrences(files, actions))
        lines.push_back(each.plan + " " + textOfDay(each.occurrence.nominal) + " " + textOfDay(each.shown));
    return lines;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(Overlay, showsWhatTheFilesList) {
    Plan moved = planOf("1", {"2026-03-14"});
    moved.occurrences[0].day = dayOf("2026-03-16");
    EXPECT_EQ(shown({{"p:f:", "/f", true, {}, {moved}}, {"p:g:", "/g", true, {}, {moved}}}, {}),
              (Lines{"p:f:1 2026-03-14 2026-03-16", "p:g:1 2026-03-14 2026-03-16"}));
}

TEST(Overlay, hidesOnePaidOrDeletedOccurrence) {
    const auto files = filesWith({planOf("1", {"2026-03-01", "2026-04-01"}), planOf("2", {"2026-03-01"})});
    for (const ActionType type : {ActionType::Paid, ActionType::Delete})
        EXPECT_EQ(shown(files, {action(type, "p:f:1", "2026-03-01")}),
                  (Lines{"p:f:1 2026-04-01 2026-04-01", "p:f:2 2026-03-01 2026-03-01"}));
}

TEST(Overlay, hidesAllLaterOccurrencesOfThePlan) {
    const auto files =
        filesWith({planOf("1", {"2026-03-01", "2026-03-15", "2026-04-01"}), planOf("2", {"2026-03-20"})});
    EXPECT_EQ(shown(files, {action(ActionType::Delete, "p:f:1", "2026-03-15", 1)}),
              (Lines{"p:f:1 2026-03-01 2026-03-01", "p:f:2 2026-03-20 2026-03-20"}));
}

TEST(Overlay, postponesAcrossTheEndsOfMonths) {
    const auto files = filesWith({planOf("1", {"2026-03-01", "2026-04-01"})});
    EXPECT_EQ(shown(files, {action(ActionType::Later, "p:f:1", "2026-03-01", 3, "2026-03-30")}),
              (Lines{"p:f:1 2026-03-01 2026-04-02", "p:f:1 2026-04-01 2026-04-01"}));
}

TEST(Overlay, followsTheLastAction) {
    const auto files = filesWith({planOf("1", {"2026-03-01"})});
    std::vector<Action> actions{action(ActionType::Later, "p:f:1", "2026-03-01", 7),
                                action(ActionType::Later, "p:f:1", "2026-03-01", 1, "2026-03-11")};
    EXPECT_EQ(shown(files, actions), (Lines{"p:f:1 2026-03-01 2026-03-12"}));
    actions.pop_back();
    EXPECT_EQ(shown(files, actions), (Lines{"p:f:1 2026-03-01 2026-03-17"}));
    actions.push_back(action(ActionType::Paid, "p:f:1", "2026-03-01"));
    EXPECT_EQ(shown(files, actions), Lines{});
}

TEST(Overlay, staysWithinTheCalendar) {
    const auto files = filesWith({planOf("1", {"2026-03-01"})});
    EXPECT_EQ(shown(files, {action(ActionType::Later, "p:f:1", "2026-03-01", INT64_MAX)}).size(), 1U);
    EXPECT_EQ(shown(files, {action(ActionType::Later, "p:f:1", "2026-03-01", INT64_MIN)}).size(), 1U);
    EXPECT_EQ(shown(files, {action(ActionType::Later, "p:f:1", "2026-03-01", INT64_MAX, "9999-01-01")}),
              (Lines{"p:f:1 2026-03-01 9999-12-31"}));
}

TEST(Overlay, endsWhatTheFileNoLongerLists) {
    const std::vector<Action> actions{
        action(ActionType::Paid, "p:f:1", "2026-03-01"),
        action(ActionType::Later, "p:f:1", "2026-03-01", 3),
        action(ActionType::Delete, "p:f:1", "2026-03-01"),
        action(ActionType::Delete, "p:f:1", "2026-03-01", 1),
        action(ActionType::Paid, "p:f:1", "2026-04-01"),
        action(ActionType::Paid, "p:f:gone", "2026-03-01"),
        action(ActionType::Paid, "p:f:1", "2026-05-01"),      // beyond what was read
        action(ActionType::Paid, "p:other:1", "2026-03-01")}; // of a file that is not connected
    auto files = filesWith({planOf("1", {"2026-04-01"})});
    EXPECT_EQ(endedActions(files, actions),
              (std::vector{actions[0].number, actions[1].number, actions[2].number, actions[5].number}));
    files[0].isFresh = false;
    EXPECT_EQ(endedActions(files, actions), std::vector<std::int64_t>{});
}

TEST(Overlay, tellsWhatIsPaidAndStillListed) {
    const auto files = filesWith({planOf("1", {"2026-03-01", "2026-04-01"})});
    const std::vector<Action> actions{action(ActionType::Later, "p:f:1", "2026-03-01", 3),
                                      action(ActionType::Paid, "p:f:1", "2026-04-01"),
                                      action(ActionType::Paid, "p:f:1", "2026-02-01")};
    const auto pending = pendingOccurrences(files, actions);
    ASSERT_EQ(pending.size(), 1U);
    EXPECT_EQ(pending[0].action, &actions[1]);
    EXPECT_EQ(pending[0].details, &files[0].plans[0]);
}

} // namespace bridge

#pragma once

#include "bridge/BridgeTest.h"
#include "bridge/Programs.h"
#include "platform/plist/Value.h"

#include <string>
#include <vector>

namespace bridge {

// A program of tests. Its files end in ".plans" and hold what textOfPlans gives.
[[nodiscard]] Programs madeUpPrograms();

// Runs commands in this process, with that program or others.
class CommandTest : public BridgeTest {
protected:
    // Runs the command line against the container and gives the exit status.
    int run(std::vector<std::string> arguments);

    // Write a file of the program into the home; connect() connects it too.
    void writePlans(const std::string& name, const std::vector<Plan>& plans) const;
    void connect(const std::string& name, const std::vector<Plan>& plans);

    [[nodiscard]] std::vector<platform::plist::Dictionary> readRecords() const;
    // "PLAN DAY" for each record of the feed, the plan's key in its file.
    [[nodiscard]] std::vector<std::string> shown() const;
    // Appends an action on a record to the log, as the panel does, at the present moment.
    void act(const platform::plist::Dictionary& record, std::int64_t type, std::int64_t parameter = 0) const;
    [[nodiscard]] static std::size_t countOpen(); // actions

    std::string out; // what the last command wrote
    std::string err;
    Programs used = madeUpPrograms();
};

} // namespace bridge

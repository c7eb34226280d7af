#pragma once

#include "bridge/plans/Plan.h"

#include <string>
#include <vector>

namespace bridge {

// The days that a reader is asked for.
struct Period {
    Day today;
    Day last; // the last day whose occurrences are wanted, today or later
};

// What became of a file.
struct Reading {
    std::vector<Plan> plans;           // in the order of the file
    std::vector<std::string> warnings; // sentences on what was read in spite of a doubt
    std::string fault;                 // a sentence on why nothing was read; empty where the file is sound
    std::vector<std::string> files{};  // all that was read; empty where that was the file alone

    [[nodiscard]] bool isSound() const { return fault.empty(); }
};

} // namespace bridge

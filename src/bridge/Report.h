#pragma once

#include "bridge/Feed.h"
#include "bridge/Programs.h"

#include <nlohmann/json_fwd.hpp>

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

// What a command works with: the process's standard streams and what the program knows, or those of a test.
struct Surroundings {
    std::ostream& out;
    std::ostream& err;
    Programs programs;
    Icons icons;
    bool json = false;
    std::vector<std::string> operands;
};

// The exit statuses of the program.
enum ExitStatus : int { Done = 0, Failed = 1, Misused = 2 };

// Writes a sentence to standard error, as one line that is safe on a terminal.
void say(Surroundings& surroundings, std::string_view sentence);

// The same as the reason to end.
[[nodiscard]] int failed(Surroundings& surroundings, std::string_view sentence);
[[nodiscard]] int misused(Surroundings& surroundings, std::string_view sentence);

// A text on one line, with control characters and those that change a terminal's direction of writing as
// spaces.
[[nodiscard]] std::string lineOf(std::string_view text);

// Writes a line to standard output.
void print(Surroundings& surroundings, std::string_view line);
void printJson(Surroundings& surroundings, const nlohmann::ordered_json& json);

} // namespace bridge

#pragma once

#include <string>
#include <vector>

namespace host {

// The tasks of the program. The session starts the panel and a process of this program with the window task.
// When the panel opens a URL, the desktop starts a process with the delivery task.
enum class Task { Session, Deliver, Window, Help, Misused };

struct Options {
    Task task = Task::Misused;
    std::vector<std::string> words; // the operands
};

// The arguments without the program's name.
[[nodiscard]] Options parseOptions(const std::vector<std::string>& arguments);

[[nodiscard]] const char* helpText();
[[nodiscard]] const char* usageText(); // one line

} // namespace host

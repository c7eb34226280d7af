#pragma once

#include <string>
#include <vector>

namespace host {

// The one program has three tasks: the session starts the panel and, as processes of its own, the window and,
// through the desktop, a delivery for each URL that the panel opens.
enum class Task { Session, Deliver, Window, Help, Misused };

struct Options {
    Task task = Task::Misused;
    std::vector<std::string> words; // what the task is about, without the option that names it
};

// The arguments without the program's name.
[[nodiscard]] Options parseOptions(const std::vector<std::string>& arguments);

[[nodiscard]] const char* helpText();
[[nodiscard]] const char* usageText(); // one line

} // namespace host

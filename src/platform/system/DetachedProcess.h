#pragma once

#include <optional>
#include <string>
#include <vector>

namespace platform {

// The path of a program that PATH leads to (the system's default path where PATH is not set); none where no
// executable file of that name is there.
[[nodiscard]] std::optional<std::string> findProgram(const std::string& name);

// Starts a program (a path) with arguments, the name it is called by first, as a process that belongs to
// nobody here: no child to wait for, a session of its own, standard streams on /dev/null, no other open file,
// signals as a fresh process has them. Waits until the program is executed, not for what it does. False where
// an argument holds a NUL byte, no process could be made or the program cannot be executed.
[[nodiscard]] bool startDetached(const std::string& path, const std::vector<std::string>& arguments);

} // namespace platform

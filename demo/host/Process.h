#pragma once

#include "host/Registration.h"

#include <csignal>
#include <string>
#include <sys/types.h>
#include <vector>

namespace host {

// A child process. It is asked to end when this one dies, whatever the reason.
class Process final {
public:
    // Starts a program (a path, or a name that PATH leads to) with these words, its own name first, with
    // variables added to this process's environment and with these signals blocked.
    Process(const std::vector<std::string>& words, const Variables& variables, const sigset_t& blocked);
    // Ends it, gently at first.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Looks whether it has ended. Never waits.
    [[nodiscard]] bool hasEnded();
    // 0 to 255 as the program gave it, 128 and the number of the signal that ended it; 127 where it could not
    // be started. Means something once it has ended.
    [[nodiscard]] int exitStatus() const { return exitStatus_; }

private:
    void collect(int status);

    pid_t pid_ = -1; // none once it has ended
    int exitStatus_ = 127;
};

// For how long a child that was asked to end is waited for.
inline constexpr timespec grace{5, 0};

} // namespace host

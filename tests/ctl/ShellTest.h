#pragma once

#include "ctl/CtlTest.h"

#include <functional>
#include <string>

namespace ctl {

// Runs the built program itself, on the container of exchange tests.
class ShellTest : public CtlTest {
protected:
    // Runs a line of the shell in which $CTL is the program; the exit status. `before` is called in the
    // shell's process before that starts.
    int shell(const std::string& line, const std::function<void()>& before = {});
};

} // namespace ctl

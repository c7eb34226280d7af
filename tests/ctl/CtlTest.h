#pragma once

#include "exchange/ExchangeTest.h"
#include "platform/storage/FileSystemCalls.h"

#include <sstream>
#include <string>
#include <vector>

namespace ctl {

// Runs the companion's commands in this process, on the container of exchange tests.
class CtlTest : public exchange::ExchangeTest {
protected:
    // Runs the command line against the container and gives the exit status.
    int run(std::vector<std::string> arguments, const std::string& input = {});

    std::string out; // what the last command wrote
    std::string err;
};

// The system's calls, where waiting for a lock takes no time.
class Unhurried final : public platform::FileSystemCalls {
public:
    Unhurried() { setCurrent(this); }
    ~Unhurried() override { setCurrent(nullptr); }
    Unhurried(const Unhurried&) = delete;
    Unhurried& operator=(const Unhurried&) = delete;

    void pause(std::chrono::milliseconds /*duration*/) override {}
};

} // namespace ctl

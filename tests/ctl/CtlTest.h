#pragma once

#include "exchange/ExchangeTest.h"

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

} // namespace ctl

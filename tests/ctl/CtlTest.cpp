#include "ctl/CtlTest.h"

#include "ctl/Program.h"

namespace ctl {

int CtlTest::run(std::vector<std::string> arguments, const std::string& input) {
    arguments.insert(arguments.begin(), {"--containers", scratch});
    std::istringstream in(input);
    std::ostringstream outStream;
    std::ostringstream errStream;
    Streams streams{in, outStream, errStream};
    const int status = ctl::run(arguments, streams);
    out = outStream.str();
    err = errStream.str();
    return status;
}

} // namespace ctl

#pragma once

namespace center {

// The panel program: options, application, panel. Returns the exit status.
int run(int argc, char** argv);

} // namespace center

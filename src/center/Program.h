#pragma once

namespace center {

// Runs the panel program and returns its exit status.
int run(int argc, char** argv);

} // namespace center

#pragma once

namespace program {

// Runs korvel-today and returns its exit status.
int run(int argc, char** argv);

} // namespace program

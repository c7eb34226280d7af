#include "ctl/Confinement.h"
#include "ctl/Limits.h"
#include "ctl/Program.h"

#include <iostream>
#include <new>
#include <stdexcept>
#include <unistd.h>

int main(int argc, char** argv) {
    ctl::prepareForLimits();
    try {
        std::ios::sync_with_stdio(false);
        ctl::Streams streams{std::cin, std::cout, std::cerr, isatty(STDOUT_FILENO) == 1, ctl::confineProcess};
        return ctl::run({argv + 1, argv + argc}, streams);
    } catch (const std::bad_alloc&) {
        return ctl::reportNoMemory();
    } catch (const std::length_error&) {
        return ctl::reportNoMemory();
    }
}

#include "ctl/Program.h"

#include <iostream>

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    ctl::Streams streams{std::cin, std::cout, std::cerr};
    return ctl::run({argv + 1, argv + argc}, streams);
}

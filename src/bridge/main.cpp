#include "bridge/Run.h"

#include "bridge/KnownPrograms.h"

#include <iostream>

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    return bridge::run({argv + 1, argv + argc}, std::cout, std::cerr, bridge::knownPrograms(),
                       bridge::knownIcons());
}

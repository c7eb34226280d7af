// Prints what this kernel offers for confining a process. Exit status 77 if a part of what is used is
// missing.

#include "platform/confinement/FileConfinement.h"
#include "platform/confinement/SystemCallConfinement.h"

#include <cstdio>

int main() {
    const int version = platform::landlockVersion();
    const bool filters = platform::canConfineSystemCalls();
    std::printf("Landlock: version %d (%d is used); system calls: %s\n", version,
                platform::newestUsedLandlockVersion, filters ? "filtered" : "not filtered");
    if (version >= platform::newestUsedLandlockVersion && filters)
        return 0;
    std::puts("The tests of what this kernel lacks have not been run.");
    return 77;
}

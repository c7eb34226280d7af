#include "ctl/StatusCommand.h"

#include "platform/confinement/FileConfinement.h"
#include "platform/confinement/SystemCallConfinement.h"

#include <algorithm>
#include <ostream>
#include <string>

namespace ctl {

namespace {

std::string textOf(int version, bool filters) {
    if (version == 0)
        return std::string("this kernel has no Landlock: the panel may read all that its user may; ") +
               (filters ? "system calls filtered" : "system calls are not filtered");
    std::string text = "files by Landlock (version " + std::to_string(version);
    if (version < platform::newestUsedLandlockVersion)
        text += "; version " + std::to_string(platform::newestUsedLandlockVersion) + " forbids more";
    return text + (filters ? "), system calls filtered" : "); this kernel filters no system calls");
}

} // namespace

int status(const Options& options, Streams& streams) {
    const int version = platform::landlockVersion();
    const bool filters = platform::canConfineSystemCalls();
    if (options.json)
        streams.out << "{\"confinement\": {\"landlockVersion\": " << version
                    << ", \"usedLandlockVersion\": " << std::min(version, platform::newestUsedLandlockVersion)
                    << ", \"filtersSystemCalls\": " << (filters ? "true" : "false") << "}}\n";
    else
        streams.out << "confinement: " << textOf(version, filters) << '\n';
    return Done;
}

} // namespace ctl

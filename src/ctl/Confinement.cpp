#include "ctl/Confinement.h"

#include "platform/confinement/SystemCallConfinement.h"
#include "platform/confinement/SystemFiles.h"
#include "platform/storage/GroupContainers.h"

namespace ctl {

std::error_code confineProcess(const platform::AllowedFiles& files) {
    // Without HOME the folder is that of the user's entry, for which some systems ask a service.
    platform::GroupContainers::setFolder(platform::GroupContainers::folder());
    const int version = platform::landlockVersion();
    if (version > 0) {
        platform::AllowedFiles allowed = platform::systemFiles();
        platform::add(allowed, files);
        if (const std::error_code error = platform::confineFiles(allowed, version))
            return error;
    }
    if (!platform::canConfineSystemCalls())
        return {};
    return platform::confineSystemCalls(platform::Sockets::None, version);
}

bool confine(Streams& streams, const platform::AllowedFiles& files) {
    const std::error_code error = streams.confine ? streams.confine(files) : std::error_code();
    if (error)
        (void)failed(streams, "", "the program cannot be confined: " + error.message());
    return !error;
}

} // namespace ctl

#include "platform/confinement/FileConfinement.h"

#include "platform/storage/OpenFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {

namespace {

// The kernel's interface (linux/landlock.h), whose newer parts the header of Debian 12 does not have.

enum FileAccess : std::uint64_t {
    Execute = 1U << 0U,
    WriteFile = 1U << 1U,
    ReadFile = 1U << 2U,
    ReadFolder = 1U << 3U,
    RemoveFile = 1U << 5U,
    MakeFolder = 1U << 7U,
    MakeFile = 1U << 8U,
    AllOfVersion1 = (1U << 13U) - 1,
    Refer = 1U << 13U, // from version 2: between folders, which version 1 forbids in any case
    Truncate = 1U << 14U,
    ControlDevice = 1U << 15U,
};
constexpr std::uint64_t bindAndConnectTcp = 3;
constexpr std::uint64_t signals = 2;

struct Ruleset {
    std::uint64_t files = 0;
    std::uint64_t network = 0;
    std::uint64_t scopes = 0;
};
struct [[gnu::packed]] PathRule {
    std::uint64_t allowed = 0;
    std::int32_t file = -1;
};
constexpr unsigned askForVersion = 1;
constexpr int pathRule = 1;

int createRuleset(const Ruleset* ruleset, std::size_t size, unsigned flags) {
    return static_cast<int>(syscall(SYS_landlock_create_ruleset, ruleset, size, flags));
}

// A kernel takes the fields that it does not know if they are zero. Abstract sockets are not forbidden, as
// those of X11 are: libxcb does not try the other one after EPERM.
Ruleset forbiddenBy(int version) {
    Ruleset ruleset{AllOfVersion1};
    if (version >= 2)
        ruleset.files |= Refer;
    if (version >= 3)
        ruleset.files |= Truncate;
    if (version >= 4)
        ruleset.network = bindAndConnectTcp;
    if (version >= 5)
        ruleset.files |= ControlDevice;
    if (version >= 6)
        ruleset.scopes = signals;
    return ruleset;
}

std::error_code allow(const OpenFile& ruleset, const std::string& path, std::uint64_t access) {
    const OpenFile file(open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0)
        return {};
    if (!S_ISDIR(status.st_mode))
        access &= WriteFile | ReadFile | Truncate;
    const PathRule rule{access, file.number()};
    if (syscall(SYS_landlock_add_rule, ruleset.number(), pathRule, &rule, 0) == 0 || errno == EBADFD)
        return {}; // EBADFD: on no file system
    return lastError();
}

} // namespace

int landlockVersion() {
    return std::max(createRuleset(nullptr, 0, askForVersion), 0);
}

std::error_code confineFiles(const AllowedFiles& allowed, int version) {
    const Ruleset forbidden = forbiddenBy(version);
    // Kernels of before a field refuse its size only if it is not zero.
    const OpenFile ruleset(createRuleset(&forbidden, sizeof forbidden, 0));
    if (!ruleset.isOpen())
        return lastError();
    constexpr std::uint64_t reading = ReadFile | ReadFolder;
    const std::uint64_t writing =
        (reading | WriteFile | RemoveFile | MakeFile | MakeFolder | Truncate) & forbidden.files;
    for (const std::string& path : allowed.readable)
        if (const std::error_code error = allow(ruleset, path, reading))
            return error;
    for (const std::string& path : allowed.writable)
        if (const std::error_code error = allow(ruleset, path, writing))
            return error;
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        syscall(SYS_landlock_restrict_self, ruleset.number(), 0) != 0)
        return lastError();
    return {};
}

} // namespace platform

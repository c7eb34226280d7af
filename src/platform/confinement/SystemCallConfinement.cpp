#include "platform/confinement/SystemCallConfinement.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {

namespace {

bool hasFilter = false;

// What is allowed in any form. docs/security.md says how these lists came about. A name that an architecture
// does not have is left out.

// Observed in the panel's process.
constexpr std::string_view observedCalls =
    "access arch_prctl brk clock_nanosleep close eventfd2 exit exit_group fadvise64 fallocate fchown "
    "flock fremovexattr fstat fstatfs fsync ftruncate futex getcwd getdents64 getegid geteuid getgid "
    "getpeername getpid getrandom getresgid getresuid getsockname gettid getuid inotify_add_watch "
    "inotify_init1 inotify_rm_watch listxattr lseek madvise memfd_create mmap mprotect munmap newfstatat "
    "pipe2 poll ppoll pread64 read readlink recvfrom recvmsg renameat restart_syscall rseq rt_sigaction "
    "rt_sigprocmask rt_sigreturn sched_getaffinity seccomp sendmsg sendto set_robust_list set_tid_address "
    "shmat shmctl shmdt shmget shutdown statx sysinfo timerfd_create timerfd_settime uname write writev";

// Not observed there: what the companion does with the action log and with its child, and alternatives to all
// of these, which other versions of the C library and of Qt, other kernels, processors and desktops use. None
// reaches further.
constexpr std::string_view alternativeCalls =
    "clock_getres clock_gettime close_range dup dup2 dup3 epoll_create1 epoll_ctl epoll_pwait epoll_wait "
    "faccessat faccessat2 fdatasync fgetxattr flistxattr fsetxattr get_robust_list getgroups getppid "
    "getrlimit getrusage getsockopt gettimeofday getxattr lgetxattr linkat lstat membarrier mremap "
    "nanosleep pause preadv pselect6 pwrite64 pwritev readlinkat readv recvmmsg rename renameat2 "
    "rt_sigpending rt_sigsuspend rt_sigtimedwait sched_getparam sched_getscheduler sched_yield select "
    "sendmmsg setrlimit setsockopt sigaltstack signalfd4 stat statfs time timerfd_gettime times umask "
    "unlink unlinkat wait4";

constexpr scmp_datum_t specialBits = 07000; // set-user-id, set-group-id, sticky

class Filter final {
public:
    explicit Filter(std::uint32_t defaultAction)
        : context_(hasRoom() ? seccomp_init(defaultAction) : nullptr, seccomp_release)
        , error_(context_ ? 0 : -ENOMEM) {
        set(SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(ENOSYS)); // by another architecture's numbers
    }

    void add(std::uint32_t action, const char* name, std::initializer_list<scmp_arg_cmp> conditions = {}) {
        const int call = seccomp_syscall_resolve_name(name);
        if (error_ != 0 || call == __NR_SCMP_ERROR)
            return;
        error_ = seccomp_rule_add_array(context_.get(), action, call,
                                        static_cast<unsigned>(conditions.size()), conditions.begin());
    }

    void set(scmp_filter_attr attribute, std::uint32_t value) {
        if (error_ == 0)
            error_ = seccomp_attr_set(context_.get(), attribute, value);
    }

    [[nodiscard]] std::error_code install() {
        if (error_ == 0)
            error_ = seccomp_load(context_.get());
        return {-error_, std::generic_category()};
    }

private:
    // The library does not look at each of its allocations. It takes less than a tenth of this.
    [[nodiscard]] static bool hasRoom() {
        constexpr std::size_t room = 4 * 1024 * 1024;
        void* memory = mmap(nullptr, room, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return memory != MAP_FAILED && munmap(memory, room) == 0;
    }

    std::unique_ptr<void, decltype(&seccomp_release)> context_;
    int error_;
};

constexpr scmp_arg_cmp equals(unsigned argument, scmp_datum_t value) {
    return {argument, SCMP_CMP_EQ, value, 0};
}
constexpr scmp_arg_cmp maskedEquals(unsigned argument, scmp_datum_t mask, scmp_datum_t value) {
    return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

// Names with a space between them.
void allowAll(Filter& filter, std::string_view names) {
    while (!names.empty()) {
        const std::string_view name = names.substr(0, names.find(' '));
        filter.add(SCMP_ACT_ALLOW, std::string(name).c_str());
        names.remove_prefix(std::min(name.size() + 1, names.size()));
    }
}

void allow(Filter& filter, const char* name, unsigned argument, std::initializer_list<scmp_datum_t> values) {
    for (const scmp_datum_t value : values)
        filter.add(SCMP_ACT_ALLOW, name, {equals(argument, value)});
}

constexpr scmp_arg_cmp hasNone(unsigned argument, scmp_datum_t bits) {
    return maskedEquals(argument, bits, 0);
}

// No file and no folder gets special bits. The mode counts where a file may be made.
void allowMaking(Filter& filter, bool truncates) {
    constexpr scmp_datum_t making = O_CREAT | (O_TMPFILE & ~O_DIRECTORY);
    const scmp_datum_t truncating = truncates ? 0 : O_TRUNC;
    const auto allowOpen = [&](const char* name, unsigned flags, unsigned mode) {
        filter.add(SCMP_ACT_ALLOW, name, {hasNone(flags, making | truncating)});
        filter.add(SCMP_ACT_ALLOW, name, {hasNone(flags, truncating), hasNone(mode, specialBits)});
    };
    allowOpen("open", 1, 2);
    allowOpen("openat", 2, 3);
    filter.add(SCMP_ACT_ALLOW, "mkdir", {hasNone(1, specialBits)});
    filter.add(SCMP_ACT_ALLOW, "mkdirat", {hasNone(2, specialBits)});
    filter.add(SCMP_ACT_ALLOW, "fchmod", {hasNone(1, specialBits)});
}

void allowThreads(Filter& filter) {
    constexpr scmp_datum_t namespaces = CLONE_NEWNS | CLONE_NEWCGROUP | CLONE_NEWUTS | CLONE_NEWIPC |
                                        CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET;
    filter.add(SCMP_ACT_ALLOW, "clone", {maskedEquals(0, CLONE_THREAD | namespaces, CLONE_THREAD)});
}

// To this process alone, as abort() does.
void allowSignals(Filter& filter) {
    const auto process = static_cast<scmp_datum_t>(getpid());
    allow(filter, "kill", 0, {process});
    allow(filter, "tgkill", 0, {process});
}

// Of this process alone.
void allowLimits(Filter& filter) {
    allow(filter, "prlimit64", 0, {0, static_cast<scmp_datum_t>(getpid())});
}

// Not the owner of a file's signals, which would be a way to send one.
void allowControl(Filter& filter) {
    allow(filter, "fcntl", 1,
          {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL, F_SETFL, F_ADD_SEALS, F_GET_SEALS});
    // Not what types into a terminal (TIOCSTI, TIOCLINUX).
    allow(filter, "ioctl", 1, {FIONREAD, FIONBIO, FIOCLEX, TCGETS, TIOCGWINSZ});
    constexpr scmp_datum_t nameMemory = 0x53564d41; // PR_SET_VMA
    allow(filter, "prctl", 0,
          {PR_SET_NAME, PR_GET_NAME, PR_SET_NO_NEW_PRIVS, PR_GET_NO_NEW_PRIVS, PR_GET_SECCOMP,
           PR_CAPBSET_READ, PR_SET_TIMERSLACK, PR_GET_TIMERSLACK, PR_SET_DUMPABLE, nameMemory});
}

void allowLocalSockets(Filter& filter) {
    for (const char* name : {"socket", "socketpair"})
        allow(filter, name, 0, {AF_UNIX});
    filter.add(SCMP_ACT_ALLOW, "connect");
}

} // namespace

std::error_code confineSystemCalls(Sockets sockets, int landlockVersion) {
    hasFilter = true;
    Filter filter(SCMP_ACT_ERRNO(ENOSYS));
    filter.set(SCMP_FLTATR_CTL_OPTIMIZE, 2); // a binary search
    for (const std::string_view names : {observedCalls, alternativeCalls})
        allowAll(filter, names);
    allowMaking(filter, landlockVersion >= 3);
    allowThreads(filter);
    allowSignals(filter);
    allowLimits(filter);
    allowControl(filter);
    if (sockets == Sockets::Local)
        allowLocalSockets(filter);
    return filter.install();
}

std::error_code forbidNewConnections() {
    Filter filter(SCMP_ACT_ALLOW);
    filter.set(SCMP_FLTATR_CTL_TSYNC, 1);
    for (const char* name : {"socket", "socketpair", "connect"})
        filter.add(SCMP_ACT_ERRNO(EPERM), name);
    return filter.install();
}

#ifdef __SANITIZE_ADDRESS__
// At the end of a process, the sanitizer starts another one that traces it to look for leaks.
extern "C" int __lsan_is_turned_off() { // NOLINT(bugprone-reserved-identifier): the sanitizer's name
    return hasFilter ? 1 : 0;
}
#endif

bool canConfineSystemCalls() {
    return prctl(PR_GET_SECCOMP, 0, 0, 0, 0) >= 0;
}

} // namespace platform

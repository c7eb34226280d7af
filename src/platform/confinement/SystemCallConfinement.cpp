#include "platform/confinement/SystemCallConfinement.h"

#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {

namespace {

// docs/security.md says how this list came about. A name that is unknown to an architecture is left out, and
// so is the second way to a call that an architecture has only one of.
constexpr const char* allowed[] = {
    // Memory, that which is shared with a display server included.
    "brk",
    "madvise",
    "membarrier",
    "memfd_create",
    "mmap",
    "mprotect",
    "mremap",
    "munmap",
    "shmat",
    "shmctl",
    "shmdt",
    "shmget",
    // Threads, and the end of the process.
    "arch_prctl",
    "exit",
    "exit_group",
    "futex",
    "get_robust_list",
    "restart_syscall",
    "rseq",
    "sched_getaffinity",
    "sched_getparam",
    "sched_getscheduler",
    "sched_setaffinity",
    "sched_setscheduler",
    "sched_yield",
    "set_robust_list",
    "set_tid_address",
    // Signals that come.
    "pause",
    "rt_sigaction",
    "rt_sigpending",
    "rt_sigprocmask",
    "rt_sigreturn",
    "rt_sigsuspend",
    "rt_sigtimedwait",
    "sigaltstack",
    "signalfd4",
    // Time.
    "clock_getres",
    "clock_gettime",
    "clock_nanosleep",
    "gettimeofday",
    "nanosleep",
    "time",
    "timerfd_create",
    "timerfd_gettime",
    "timerfd_settime",
    "times",
    // Files that are open.
    "close",
    "close_range",
    "dup",
    "dup2",
    "dup3",
    "fadvise64",
    "fallocate",
    "fchmod",
    "fchown",
    "fdatasync",
    "fgetxattr",
    "flistxattr",
    "flock",
    "fremovexattr",
    "fsetxattr",
    "fstat",
    "fstatfs",
    "fsync",
    "ftruncate",
    "getdents64",
    "lseek",
    "pipe2",
    "pread64",
    "preadv",
    "pwrite64",
    "pwritev",
    "read",
    "readv",
    "write",
    "writev",
    // Files by their paths.
    "access",
    "faccessat",
    "faccessat2",
    "getcwd",
    "getxattr",
    "inotify_add_watch",
    "inotify_init1",
    "inotify_rm_watch",
    "lgetxattr",
    "linkat",
    "lstat",
    "mkdir",
    "mkdirat",
    "newfstatat",
    "readlink",
    "readlinkat",
    "rename",
    "renameat",
    "renameat2",
    "stat",
    "statfs",
    "statx",
    "umask",
    "unlink",
    "unlinkat",
    // Waiting.
    "epoll_create1",
    "epoll_ctl",
    "epoll_pwait",
    "epoll_wait",
    "eventfd2",
    "poll",
    "ppoll",
    "pselect6",
    "select",
    // Sockets that are there.
    "getpeername",
    "getsockname",
    "getsockopt",
    "recvfrom",
    "recvmmsg",
    "recvmsg",
    "sendmmsg",
    "sendmsg",
    "sendto",
    "setsockopt",
    "shutdown",
    // What the process is.
    "getegid",
    "geteuid",
    "getgid",
    "getgroups",
    "getpid",
    "getppid",
    "getpriority",
    "getrandom",
    "getresgid",
    "getresuid",
    "getrlimit",
    "getrusage",
    "gettid",
    "getuid",
    "prlimit64",
    "setrlimit",
    "sysinfo",
    "uname",
    // Giving up more.
    "seccomp",
};

class Filter final {
public:
    explicit Filter(std::uint32_t otherwise)
        : context_(seccomp_init(otherwise), seccomp_release)
        , error_(context_ ? 0 : -ENOMEM) {}

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
    std::unique_ptr<void, decltype(&seccomp_release)> context_;
    int error_;
};

constexpr scmp_arg_cmp equals(unsigned argument, scmp_datum_t value) {
    return {argument, SCMP_CMP_EQ, value, 0};
}
constexpr scmp_arg_cmp equals(unsigned argument, scmp_datum_t mask, scmp_datum_t value) {
    return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

void allow(Filter& filter, const char* name, unsigned argument, std::initializer_list<scmp_datum_t> values) {
    for (const scmp_datum_t value : values)
        filter.add(SCMP_ACT_ALLOW, name, {equals(argument, value)});
}

void allowOpening(Filter& filter, bool truncates) {
    const scmp_datum_t mask = truncates ? 0 : O_TRUNC;
    filter.add(SCMP_ACT_ALLOW, "open", {equals(1, mask, 0)});
    filter.add(SCMP_ACT_ALLOW, "openat", {equals(2, mask, 0)});
}

void allowThreads(Filter& filter) {
    constexpr scmp_datum_t namespaces = CLONE_NEWNS | CLONE_NEWCGROUP | CLONE_NEWUTS | CLONE_NEWIPC |
                                        CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET;
    filter.add(SCMP_ACT_ALLOW, "clone", {equals(0, CLONE_THREAD | namespaces, CLONE_THREAD)});
}

// To this process alone, as abort() does.
void allowSignals(Filter& filter) {
    const auto process = static_cast<scmp_datum_t>(getpid());
    allow(filter, "kill", 0, {process});
    allow(filter, "tgkill", 0, {process});
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
           PR_CAPBSET_READ, PR_SET_TIMERSLACK, PR_GET_TIMERSLACK, PR_GET_DUMPABLE, nameMemory});
}

void allowLocalSockets(Filter& filter) {
    for (const char* name : {"socket", "socketpair"})
        allow(filter, name, 0, {AF_UNIX});
    filter.add(SCMP_ACT_ALLOW, "connect");
}

} // namespace

std::error_code confineSystemCalls(Sockets sockets, int landlockVersion) {
    Filter filter(SCMP_ACT_ERRNO(ENOSYS));
    filter.set(SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(ENOSYS)); // by another architecture's numbers
    filter.set(SCMP_FLTATR_CTL_OPTIMIZE, 2);                     // found by number, not one after the other
    for (const char* name : allowed)
        filter.add(SCMP_ACT_ALLOW, name);
    allowOpening(filter, landlockVersion >= 3);
    allowThreads(filter);
    allowSignals(filter);
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

bool canConfineSystemCalls() {
    return prctl(PR_GET_SECCOMP, 0, 0, 0, 0) >= 0;
}

} // namespace platform

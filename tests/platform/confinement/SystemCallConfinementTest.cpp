#include "platform/confinement/SystemCallConfinement.h"

#include "platform/confinement/ConfinedChild.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <future>
#include <sched.h>
#include <set>
#include <string>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

using platform::Sockets;
using support::inConfinedChild;

constexpr int newest = 99; // all that Landlock can forbid is forbidden by it

std::string attempt(const std::function<long()>& what, Sockets sockets = Sockets::Local,
                    int version = newest) {
    return inConfinedChild([&] { return platform::confineSystemCalls(sockets, version); }, what);
}

struct Forbidden {
    const char* name;
    std::function<long()> call;
};

void PrintTo(const Forbidden& forbidden, std::ostream* out) {
    *out << forbidden.name;
}

// A call that is not filtered would end with another error than that of a call which the kernel does not
// have.
const Forbidden forbiddenCalls[] = {
    {"fork", [] { return syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr); }},
    {"processOfTheSameMemory",
     [] { return syscall(SYS_clone, CLONE_VM | CLONE_VFORK | SIGCHLD, nullptr, nullptr, nullptr, nullptr); }},
    {"clone3", [] { return syscall(SYS_clone3, nullptr, 0); }},
    {"program", [] { return execl("/bin/true", "true", nullptr); }},
    {"programOfAnOpenFile", [] { return syscall(SYS_execveat, 0, "", nullptr, nullptr, AT_EMPTY_PATH); }},
    {"internetSocket", [] { return socket(AF_INET, SOCK_STREAM, 0); }},
    {"internetSocketOfVersion6", [] { return socket(AF_INET6, SOCK_DGRAM, 0); }},
    {"netlinkSocket", [] { return socket(AF_NETLINK, SOCK_RAW, 0); }},
    {"packetSocket", [] { return socket(AF_PACKET, SOCK_RAW, 0); }},
    {"socketPairOfAnotherKind",
     [] {
         int ends[2];
         return socketpair(AF_TIPC, SOCK_STREAM, 0, ends);
     }},
    {"listening", [] { return listen(0, 1); }},
    {"binding", [] { return bind(0, nullptr, 0); }},
    {"accepting", [] { return accept(0, nullptr, nullptr); }},
    {"tracing", [] { return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr); }},
    {"anothersMemory", [] { return syscall(SYS_process_vm_readv, getppid(), nullptr, 0, nullptr, 0, 0); }},
    {"anothersDescriptors", [] { return syscall(SYS_pidfd_open, getppid(), 0); }},
    {"addingKeys", [] { return syscall(SYS_add_key, "user", "korvel", "x", 1, -3); }},
    {"requestingKeys", [] { return syscall(SYS_request_key, "user", "korvel", nullptr, -3); }},
    {"keys", [] { return syscall(SYS_keyctl, 0, -3, 0); }},
    {"mounting", [] { return mount("none", "/", "tmpfs", MS_REMOUNT, nullptr); }},
    {"unmounting", [] { return umount("/"); }},
    {"mountingByDescriptors", [] { return syscall(SYS_fsopen, "tmpfs", 0); }},
    {"changingTheRoot", [] { return chroot("/"); }},
    {"namespaces", [] { return unshare(CLONE_NEWUSER); }},
    {"joiningNamespaces", [] { return setns(0, 0); }},
    {"threadInANamespace",
     [] {
         return syscall(SYS_clone, CLONE_NEWUSER | CLONE_THREAD | CLONE_SIGHAND | CLONE_VM, nullptr, nullptr,
                        nullptr, nullptr);
     }},
    {"programsOfTheKernel", [] { return syscall(SYS_bpf, 0, nullptr, 0); }},
    {"performanceCounters", [] { return syscall(SYS_perf_event_open, nullptr, 0, -1, -1, 0); }},
    {"requestsToTheKernelInARing", [] { return syscall(SYS_io_uring_setup, 1, nullptr); }},
    {"faultsOfMemory", [] { return syscall(SYS_userfaultfd, 0); }},
    {"signalToTheParent", [] { return kill(getppid(), 0); }},
    {"signalToTheGroup", [] { return kill(0, 0); }},
    {"signalToAThreadOfAnother", [] { return syscall(SYS_tgkill, getppid(), getppid(), 0); }},
    {"signalToAThread", [] { return syscall(SYS_tkill, getppid(), 0); }},
    {"signalWithAValue", [] { return sigqueue(getppid(), 0, {}); }},
    {"signalByAFile", [] { return fcntl(0, F_SETOWN, getppid()); }},
    {"typingIntoATerminal", [] { return ioctl(0, TIOCSTI, "x"); }},
    {"typingIntoATerminalWithHighBits", [] { return syscall(SYS_ioctl, 0, 0x100000000UL | TIOCSTI, "x"); }},
    {"truncatingByName", [] { return truncate("none", 0); }},
    {"makingByTruncation", [] { return syscall(SYS_creat, "none", 0600); }},
    {"openingWithAStructure", [] { return syscall(SYS_openat2, AT_FDCWD, "/", nullptr, 0); }},
    {"modeByName", [] { return chmod("/", 0755); }},
    {"ownerByName", [] { return chown("/", getuid(), getgid()); }},
    {"timesByName", [] { return utimensat(AT_FDCWD, "/", nullptr, 0); }},
    {"setUserIdBit", [] { return fchmod(STDERR_FILENO, 04755); }},
    {"stickyBit", [] { return fchmod(STDERR_FILENO, 01755); }},
    {"fileWithASetUserIdBit", [] { return open("none/a", O_WRONLY | O_CREAT, 04755); }},
    {"fileWithASetGroupIdBit", [] { return syscall(SYS_open, "none/a", O_WRONLY | O_CREAT, 02755); }},
    {"namelessFileWithASetUserIdBit", [] { return open("none", O_WRONLY | O_TMPFILE, 04755); }},
    {"folderWithASetGroupIdBit", [] { return mkdir("none/a", 02755); }},
    {"folderInAFolderWithASetGroupIdBit", [] { return mkdirat(AT_FDCWD, "none/a", 02755); }},
    {"symbolicLink", [] { return symlink("a", "none/b"); }},
    {"specialFile", [] { return mknod("none/b", S_IFIFO | 0600, 0); }},
    {"anotherUser", [] { return setuid(getuid()); }},
    {"capabilities", [] { return syscall(SYS_capset, nullptr, nullptr); }},
    {"priorityOfAnother", [] { return syscall(SYS_setpriority, 0, getppid(), 19); }},
    {"systemClock", [] { return syscall(SYS_settimeofday, nullptr, nullptr); }},
    {"hostName", [] { return sethostname("korvel", 6); }},
    {"addressSpaceOfAnotherKind", [] { return syscall(SYS_personality, 0); }},
    {"endOfNoNewRights", [] { return syscall(SYS_prctl, 8 /* PR_SET_KEEPCAPS */, 1, 0, 0, 0); }},
};

class ForbiddenCallTest : public testing::TestWithParam<Forbidden> {};

long connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (client < 0)
        return -1;
    return connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

// A listener on a Unix socket, as the session bus is one.
class LocalListener final {
public:
    LocalListener() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(listen(socket_, 4), 0);
    }
    ~LocalListener() { close(socket_); }
    LocalListener(const LocalListener&) = delete;
    LocalListener& operator=(const LocalListener&) = delete;

    [[nodiscard]] std::string path() const { return folder_.path("bus"); }

private:
    support::TemporaryFolder folder_;
    int socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

} // namespace

TEST_P(ForbiddenCallTest, failsAsOnAKernelThatDoesNotHaveIt) {
    EXPECT_EQ(attempt(GetParam().call), "ENOSYS");
}

INSTANTIATE_TEST_SUITE_P(Filter, ForbiddenCallTest, testing::ValuesIn(forbiddenCalls),
                         [](const auto& each) { return each.param.name; });

TEST(SystemCallConfinementTest, leavesThreads) {
    EXPECT_EQ(attempt([] {
                  std::atomic<int> count = 0;
                  std::thread([&] { ++count; }).join();
                  return count == 1 ? 0 : -1;
              }),
              "done");
}

TEST(SystemCallConfinementTest, leavesFiles) {
    const support::TemporaryFolder folder;
    EXPECT_EQ(attempt([&] {
                  const int file =
                      open(folder.path("a").c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
                  return write(file, "x", 1) == 1 && fsync(file) == 0 && fchmod(file, 0640) == 0 &&
                                 close(file) == 0 &&
                                 rename(folder.path("a").c_str(), folder.path("b").c_str()) == 0
                             ? 0
                             : -1;
              }),
              "done");
    EXPECT_EQ(folder.read("b"), "x");
}

TEST(SystemCallConfinementTest, failsInOrderWithLittleMemory) {
    std::set<std::string> outcomes;
    for (rlim_t kibibytes = 0; kibibytes <= 8192; kibibytes += kibibytes < 1024 ? 32 : 1024)
        outcomes.insert(inConfinedChild(
            [kibibytes] {
                std::ifstream status("/proc/self/statm");
                rlim_t pages = 0;
                status >> pages;
                const rlim_t most = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + kibibytes * 1024;
                const rlimit limit{most, most};
                setrlimit(RLIMIT_AS, &limit);
                return platform::confineSystemCalls(Sockets::None, newest);
            },
            [] { return 0; }));
    EXPECT_EQ(outcomes, (std::set<std::string>{"done", "not confined"}));
}

TEST(SystemCallConfinementTest, leavesTheProcessItsOwnSignals) {
    EXPECT_EQ(attempt([] { return kill(getpid(), 0); }), "done");
    EXPECT_EQ(attempt([] { return raise(SIGABRT); }), "killed") << "by its own signal";
}

TEST(SystemCallConfinementTest, forbidsToTruncateByOpeningWhereLandlockDoesNot) {
    const support::TemporaryFolder folder;
    folder.write("file", "x");
    const auto open = [&](int flags, int version) {
        return attempt([&] { return ::open(folder.path("file").c_str(), flags | O_CLOEXEC); }, Sockets::Local,
                       version);
    };
    for (const int version : {0, 1, 2}) {
        EXPECT_EQ(open(O_RDONLY, version), "done");
        EXPECT_EQ(open(O_WRONLY, version), "done");
        EXPECT_EQ(open(O_RDONLY | O_TRUNC, version), "ENOSYS");
        EXPECT_EQ(open(O_WRONLY | O_TRUNC, version), "ENOSYS");
    }
    EXPECT_EQ(folder.read("file"), "x");
    EXPECT_EQ(open(O_WRONLY | O_TRUNC, 3), "done");
}

TEST(SystemCallConfinementTest, leavesLocalSocketsToThoseThatNeedThem) {
    const LocalListener bus;
    EXPECT_EQ(attempt([&] { return connectTo(bus.path()); }, Sockets::Local), "done");
    EXPECT_EQ(attempt([&] { return connectTo(bus.path()); }, Sockets::None), "ENOSYS");
    EXPECT_EQ(attempt(
                  [] {
                      int ends[2];
                      return socketpair(AF_UNIX, SOCK_DGRAM, 0, ends);
                  },
                  Sockets::None),
              "ENOSYS");
}

TEST(SystemCallConfinementTest, forbidsNewConnectionsToAllThreads) {
    const LocalListener bus;
    const auto inThread = [&](const std::function<long()>& call) {
        return attempt([&] {
            std::promise<void> confined;
            std::future<int> error = std::async(std::launch::async, [&] {
                confined.get_future().wait();
                return call() < 0 ? errno : 0;
            });
            if (platform::forbidNewConnections())
                return -1L;
            confined.set_value();
            errno = error.get();
            return errno == 0 ? 0L : -1L;
        });
    };
    EXPECT_EQ(inThread([&] { return connectTo(bus.path()); }), "EPERM");
    EXPECT_EQ(inThread([&] {
                  int ends[2];
                  return socketpair(AF_UNIX, SOCK_DGRAM, 0, ends);
              }),
              "EPERM");
    EXPECT_EQ(inThread([] { return getpid(); }), "done");
}

#ifdef __x86_64__
// The number of the call in the 32-bit interface, or of the x32 one.
TEST(SystemCallConfinementTest, failsByTheNumbersOfAnotherInterface) {
    const auto getpidOf32Bits = [] {
        long result = 20; // getpid
        asm volatile("int $0x80" : "+a"(result) : : "memory", "r8", "r9", "r10", "r11");
        errno = static_cast<int>(-result);
        return result < 0 ? -1L : 0L;
    };
    const auto getpidOfX32 = [] { return syscall(0x40000000 | SYS_getpid); };
    const auto afterBoth = [](const std::function<long()>& call) {
        return attempt([&] { return platform::forbidNewConnections() ? 0 : call(); });
    };
    EXPECT_EQ(attempt(getpidOfX32), "ENOSYS");
    EXPECT_EQ(afterBoth(getpidOfX32), "ENOSYS");
    EXPECT_EQ(attempt(getpidOf32Bits), "ENOSYS");
    EXPECT_EQ(afterBoth(getpidOf32Bits), "ENOSYS");
}
#endif

TEST(SystemCallConfinementTest, forbidsToConnectASocketThatIsThereAlready) {
    const LocalListener bus;
    EXPECT_EQ(attempt([&] {
                  sockaddr_un address{};
                  address.sun_family = AF_UNIX;
                  std::strncpy(address.sun_path, bus.path().c_str(), sizeof address.sun_path - 1);
                  const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
                  if (platform::forbidNewConnections())
                      return -1;
                  return connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address);
              }),
              "EPERM");
}

// The built program on kernels that lack a part of its confinement, or refuse it.
#include "ctl/ConfinementTest.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdint>
#include <optional>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ctl {
namespace {

using testing::HasSubstr;

class KernelOfferTest : public CtlConfinementTest {};

// Has a system call fail in this process and in the programs that it starts.
void forbid(const char* call, int error, std::optional<scmp_arg_cmp> condition = {}) {
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    const int number = seccomp_syscall_resolve_name(call);
    const auto action = SCMP_ACT_ERRNO(static_cast<unsigned>(error));
    if (seccomp_rule_add_array(filter, action, number, condition ? 1 : 0,
                               condition ? &*condition : nullptr) != 0 ||
        seccomp_load(filter) != 0)
        _exit(99);
    seccomp_release(filter);
}

void withoutLandlock() {
    forbid("landlock_create_ruleset", EOPNOTSUPP);
}

void withoutFilters() {
    forbid("prctl", EINVAL, scmp_arg_cmp{0, SCMP_CMP_EQ, PR_GET_SECCOMP, 0});
}

TEST_F(KernelOfferTest, statusSaysWhatTheKernelOffers) {
    const std::string version = std::to_string(platform::landlockVersion());
    EXPECT_EQ(shell("$CTL status"), 0);
    EXPECT_THAT(out, HasSubstr("\nconfinement: files by Landlock (version " + version));
    EXPECT_THAT(out, testing::EndsWith("), system calls filtered\n"));
    EXPECT_EQ(shell("$CTL status --json"), 0);
    EXPECT_THAT(out, HasSubstr("\"landlockVersion\": " + version + ", "));
    EXPECT_EQ(shell("$CTL status", withoutFilters), 0);
    EXPECT_THAT(out, testing::EndsWith("); this kernel filters no system calls\n"));
    EXPECT_EQ(shell("$CTL status now"), 2);
}

TEST_F(KernelOfferTest, statusSaysWhatTheKernelLacks) {
    EXPECT_EQ(shell("$CTL status", withoutLandlock), 0);
    EXPECT_EQ(out, "transactions: 2 overdue, 0 due today, 0 due\n"
                   "confinement: this kernel has no Landlock: the panel may read all that its user may; "
                   "system calls filtered\n");
    EXPECT_EQ(shell("$CTL status --json", withoutLandlock), 0);
    EXPECT_EQ(out, "{\"overdue\": 2, \"dueToday\": 0, \"due\": 0, \"confinement\": {\"landlockVersion\": 0, "
                   "\"usedLandlockVersion\": 0, "
                   "\"filtersSystemCalls\": true}}\n");
}

TEST_F(KernelOfferTest, startsPlainlyOnAKernelWithoutLandlock) {
    moveOut("notifications.xml", "feed");
    EXPECT_EQ(shell("TZ=UTC $CTL list", withoutLandlock), 0) << err;
    EXPECT_THAT(out, HasSubstr("Rent\n"));
    EXPECT_EQ(err, "");
}

// The kernel nests no more than 16 confinements.
void confineToTheLimit() {
    constexpr std::uint64_t makeBlockDevices = 1U << 11U;
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    for (int nested = 0; nested < 16; ++nested) {
        const long ruleset =
            syscall(SYS_landlock_create_ruleset, &makeBlockDevices, sizeof makeBlockDevices, 0);
        if (syscall(SYS_landlock_restrict_self, ruleset, 0) != 0)
            _exit(99);
        ::close(static_cast<int>(ruleset));
    }
}

TEST_F(KernelOfferTest, readsNothingWhereItCannotBeConfined) {
    const std::string before = feed();
    for (const std::string command :
         {"list", "check", "consume", "status", "status --follow", "act plan 20 paid", "act plan 20 info",
          "plist $KORVEL_GROUP_CONTAINERS/secret"}) {
        EXPECT_EQ(shell("$CTL " + command, confineToTheLimit), 1) << command;
        EXPECT_EQ(out, "");
        EXPECT_EQ(err, "korvel-todayctl: the program cannot be confined: Argument list too long\n");
    }
    EXPECT_EQ(feed(), before);
    EXPECT_FALSE(std::filesystem::exists(path("-")));
    EXPECT_FALSE(std::filesystem::exists(path("Library")));
}

} // namespace
} // namespace ctl

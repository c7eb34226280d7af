// The built program as a user whom the system refuses something. Root, to whom nothing is refused, becomes
// one.
#include "ctl/CtlTest.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/SharedDefaults.h"

#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <sstream>
#include <unistd.h>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

class UnprivilegedTest : public CtlTest {
protected:
    static constexpr uid_t somebody = 65534;

    UnprivilegedTest() {
        writeFeed({plist::Value(recordOf("plan", 20))});
        setSettings({{"account_pk", plist::Value("one")}});
        write("one/actions.xml", arrayFile(logged));
    }
    ~UnprivilegedTest() override {
        for (const std::string& folder : {container, path("one"), path("Library/Preferences")})
            chmod(folder.c_str(), 0755);
    }

    // Gives everything in the container to the user.
    void handOver() const {
        give(scratch);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(scratch))
            give(entry.path());
    }
    void close(const std::string& relative, mode_t mode = 0) const {
        ASSERT_EQ(chmod(path(relative).c_str(), mode), 0);
    }

    int runAsUser(const std::vector<std::string>& words) {
        const std::string output = scratch + "/output";
        const std::string errors = scratch + "/errors";
        for (const std::string& file : {output, errors})
            std::ofstream(file).close();
        std::vector<const char*> arguments{KORVEL_TODAYCTL, "--containers", scratch.c_str()};
        for (const std::string& word : words)
            arguments.push_back(word.c_str());
        arguments.push_back(nullptr);
        const pid_t child = fork();
        if (child == 0) {
            dup2(::open(output.c_str(), O_WRONLY), STDOUT_FILENO);
            dup2(::open(errors.c_str(), O_WRONLY), STDERR_FILENO);
            setenv("TZ", "UTC", 1);
            if (geteuid() == 0 &&
                (setgroups(0, nullptr) != 0 || setresgid(somebody, somebody, somebody) != 0 ||
                 setresuid(somebody, somebody, somebody) != 0))
                _exit(99);
            // The program may lie in a folder that the user may not search: it is opened before.
            fexecve(program_, const_cast<char* const*>(arguments.data()), environ);
            _exit(98);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        out = textOf(output);
        err = textOf(errors);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    [[nodiscard]] static std::string settingsName() {
        return "Library/Preferences/" + std::string(fullEditionGroupIdentifier) + ".plist";
    }

    const std::string logged = "<dict><key>type</key><integer>1</integer><key>pk</key><string>old</string>"
                               "<key>date</key><real>1</real><key>param</key><integer>0</integer></dict>";
    const std::vector<std::string> pay{"act", "plan", "20", "paid"};

private:
    static void give(const std::filesystem::path& path) {
        EXPECT_TRUE(geteuid() != 0 || lchown(path.c_str(), somebody, somebody) == 0);
    }
    static std::string textOf(const std::string& file) {
        std::stringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }

    int program_ = ::open(KORVEL_TODAYCTL, O_RDONLY | O_CLOEXEC);
};

TEST_F(UnprivilegedTest, consumeFailsAtAClosedAccountFolder) {
    handOver();
    close("one");
    EXPECT_EQ(runAsUser({"consume"}), 1);
    EXPECT_NE(err.find("one/actions.xml: the log's folder cannot be opened: Permission denied\n"),
              std::string::npos)
        << err;
    EXPECT_EQ(out, "");
}

TEST_F(UnprivilegedTest, consumeFailsAtAClosedLog) {
    handOver();
    close("one/actions.xml");
    EXPECT_EQ(runAsUser({"consume"}), 1);
    EXPECT_NE(err.find("one/actions.xml: Permission denied\n"), std::string::npos) << err;
    EXPECT_EQ(out, "");
}

TEST_F(UnprivilegedTest, consumeFailsAtClosedSettings) {
    handOver();
    close(settingsName());
    EXPECT_EQ(runAsUser({"consume"}), 1);
    EXPECT_NE(err.find(".plist: Permission denied\n"), std::string::npos) << err;
    EXPECT_EQ(out, "");
}

TEST_F(UnprivilegedTest, consumeKeepsALogThatItMayNotRemove) {
    handOver();
    close("one", 0555);
    EXPECT_EQ(runAsUser({"consume"}), 1);
    EXPECT_NE(err.find("the log cannot be claimed: Permission denied\n"), std::string::npos) << err;
    EXPECT_EQ(out, "");
    EXPECT_EQ(read("one/actions.xml"), arrayFile(logged));
}

TEST_F(UnprivilegedTest, actSaysWhichOfItsWritesWasRefused) {
    handOver();
    close("one", 0555);
    EXPECT_EQ(runAsUser(pay), 1);
    EXPECT_NE(err.find("the action could not be logged; the feed is rewritten: Permission denied\n"),
              std::string::npos)
        << err;
    EXPECT_EQ(feed(), arrayFile(""));
}

TEST_F(UnprivilegedTest, actSaysThatTheContainerIsReadOnly) {
    handOver();
    close(".", 0555);
    EXPECT_EQ(runAsUser(pay), 1);
    EXPECT_NE(err.find("the feed could not be rewritten; the action is logged: Permission denied\n"),
              std::string::npos)
        << err;
    EXPECT_NE(read("one/actions.xml").value_or("").find("<string>plan</string>"), std::string::npos);
}

TEST_F(UnprivilegedTest, settingsAreNotChangedWhereTheirFolderIsReadOnly) {
    handOver();
    close("Library/Preferences", 0555);
    EXPECT_EQ(runAsUser({"settings", "set", "account_pk", "two"}), 1);
    EXPECT_NE(err.find(".plist: Permission denied\n"), std::string::npos) << err;
    EXPECT_EQ(*settings().find("account_pk"), plist::Value("one"));
}

TEST_F(UnprivilegedTest, publishSaysThatTheContainerIsReadOnly) {
    write("empty.json", "[]");
    handOver();
    close(".", 0555);
    const std::string before = feed();
    EXPECT_EQ(runAsUser({"publish", path("empty.json")}), 1);
    EXPECT_NE(err.find("notifications.xml: Permission denied\n"), std::string::npos) << err;
    EXPECT_EQ(feed(), before);
}

// A file of another user's group, in a folder that both may write to. Without root there is no other user.
TEST_F(UnprivilegedTest, aReplacedFileOfAnotherUserIsNotOpenToMore) {
    handOver();
    const bool isRoot = geteuid() == 0;
    ASSERT_TRUE(!isRoot || chown(path("notifications.xml").c_str(), 0, 0) == 0);
    close("notifications.xml", 0664);
    EXPECT_EQ(runAsUser(pay), 0) << err;
    struct stat status {};
    ASSERT_EQ(stat(path("notifications.xml").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, isRoot ? somebody : geteuid());
    EXPECT_EQ(status.st_mode & 07777, isRoot ? 0604u : 0664u) << "the group is another one";
}

} // namespace
} // namespace ctl

#include "platform/confinement/FileConfinement.h"

#include "platform/confinement/ConfinedChild.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <csignal>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <netinet/in.h>
#include <numeric>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using support::inConfinedChild;

long openFile(const std::string& path, int flags) {
    return open(path.c_str(), flags | O_CLOEXEC, 0600);
}

long listFolder(const std::string& path) {
    return opendir(path.c_str()) ? 0 : -1;
}

// A listener on the loopback interface.
class Listener final {
public:
    Listener() {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address_), size), 0);
        EXPECT_EQ(listen(socket_, 4), 0);
        EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&address_), &size), 0);
    }
    ~Listener() { close(socket_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    [[nodiscard]] long connectTo() const {
        const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        return connect(client, reinterpret_cast<const sockaddr*>(&address_), sizeof address_);
    }

private:
    int socket_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address_{};
};

// Each version up to that of this kernel; ConfinementOffer reports what it lacks.
std::vector<int> versions() {
    std::vector<int> all(static_cast<std::size_t>(platform::landlockVersion()));
    std::iota(all.begin(), all.end(), 1);
    return all;
}

class FileConfinementTest : public testing::TestWithParam<int> {
protected:
    FileConfinementTest() {
        folder.write("container/notifications.xml", "feed");
        folder.write("readable/font.ttf", "font");
        folder.write("home/secret", "secret");
    }

    [[nodiscard]] std::string attempt(const std::function<long()>& what) const {
        return inConfinedChild(
            [this] {
                return platform::confineFiles({{folder.path("readable")}, {folder.path("container")}},
                                              GetParam());
            },
            what);
    }
    [[nodiscard]] std::string attemptToOpen(const char* name, int flags) const {
        return attempt([&] { return openFile(folder.path(name), flags); });
    }

    const support::TemporaryFolder folder;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Landlock, FileConfinementTest, testing::ValuesIn(versions()));
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FileConfinementTest);

TEST_P(FileConfinementTest, leavesTheReadableForReading) {
    EXPECT_EQ(attemptToOpen("readable/font.ttf", O_RDONLY), "done");
    EXPECT_EQ(attempt([this] { return listFolder(folder.path("readable")); }), "done");
}

TEST_P(FileConfinementTest, leavesTheWritableForReadingWritingReplacingRemovingAndMakingFolders) {
    EXPECT_EQ(attempt([this] { return listFolder(folder.path("container")); }), "done");
    EXPECT_EQ(attemptToOpen("container/notifications.xml", O_RDWR | O_TRUNC), "done");
    EXPECT_EQ(attempt([this] { return mkdir(folder.path("container/account").c_str(), 0700); }), "done");
    EXPECT_EQ(attemptToOpen("container/account/new", O_WRONLY | O_CREAT | O_EXCL), "done");
    EXPECT_EQ(attempt([this] {
                  return rename(folder.path("container/account/new").c_str(),
                                folder.path("container/account/actions.xml").c_str());
              }),
              "done");
    EXPECT_EQ(attempt([this] { return unlink(folder.path("container/account/actions.xml").c_str()); }),
              "done");
    EXPECT_FALSE(folder.has("container/account/actions.xml"));
}

TEST_P(FileConfinementTest, forbidsToReadAndListAllElse) {
    EXPECT_EQ(attemptToOpen("home/secret", O_RDONLY), "EACCES");
    EXPECT_EQ(attempt([this] { return listFolder(folder.path("home")); }), "EACCES");
    EXPECT_EQ(attempt([this] { return listFolder(folder.path()); }), "EACCES") << "the folder above";
}

TEST_P(FileConfinementTest, forbidsToReadAllElseThroughALinkInTheWritable) {
    std::filesystem::create_symlink(folder.path("home/secret"), folder.path("container/link"));
    EXPECT_EQ(attemptToOpen("container/link", O_RDONLY), "EACCES");
    EXPECT_EQ(attemptToOpen("container/../home/secret", O_RDONLY), "EACCES");
}

TEST_P(FileConfinementTest, forbidsToWriteTheReadable) {
    EXPECT_EQ(attemptToOpen("readable/font.ttf", O_WRONLY), "EACCES");
    EXPECT_EQ(attemptToOpen("readable/new", O_WRONLY | O_CREAT), "EACCES");
    EXPECT_EQ(attempt([this] { return unlink(folder.path("readable/font.ttf").c_str()); }), "EACCES");
}

TEST_P(FileConfinementTest, forbidsToMakeWriteAndRemoveAllElse) {
    EXPECT_EQ(attemptToOpen("home/new", O_WRONLY | O_CREAT), "EACCES");
    EXPECT_EQ(attemptToOpen("home/secret", O_WRONLY), "EACCES");
    EXPECT_EQ(attempt([this] { return unlink(folder.path("home/secret").c_str()); }), "EACCES");
    EXPECT_EQ(attempt([this] { return mkdir(folder.path("home/folder").c_str(), 0700); }), "EACCES");
    EXPECT_EQ(folder.read("home/secret"), "secret");
    EXPECT_EQ(folder.count("home"), 1U);
}

TEST_P(FileConfinementTest, forbidsToMoveAFileOutOfTheWritableOrIntoIt) {
    const auto move = [this](const char* from, const char* to) {
        return attempt([&] { return rename(folder.path(from).c_str(), folder.path(to).c_str()); });
    };
    EXPECT_EQ(move("container/notifications.xml", "home/feed"), "EACCES");
    EXPECT_EQ(move("home/secret", "container/secret"), "EACCES");
    EXPECT_TRUE(folder.has("container/notifications.xml"));
    EXPECT_TRUE(folder.has("home/secret"));
}

TEST_P(FileConfinementTest, forbidsSymbolicLinksSpecialFilesAndLinksToAllElseInTheWritable) {
    EXPECT_EQ(attempt([this] { return symlink("/etc", folder.path("container/link").c_str()); }), "EACCES");
    EXPECT_EQ(attempt([this] { return mkfifo(folder.path("container/pipe").c_str(), 0600); }), "EACCES");
    EXPECT_EQ(attempt([this] {
                  return link(folder.path("home/secret").c_str(), folder.path("container/secret").c_str());
              }),
              "EXDEV");
}

TEST_P(FileConfinementTest, forbidsPrograms) {
    EXPECT_EQ(attempt([] { return execl("/bin/true", "true", nullptr); }), "EACCES");
}

TEST_P(FileConfinementTest, keepsFilesThatAreOpen) {
    const int file = open(folder.path("home/secret").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(attempt([file] {
                  char byte = 0;
                  return read(file, &byte, 1) == 1 && byte == 's' ? 0 : -1;
              }),
              "done");
    close(file);
}

TEST_P(FileConfinementTest, concernsNoPipeThatIsOpen) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const std::string path = "/dev/fd/" + std::to_string(ends[0]);
    for (const platform::AllowedFiles& allowed :
         {platform::AllowedFiles{{path}, {}}, platform::AllowedFiles()})
        EXPECT_EQ(inConfinedChild([&] { return platform::confineFiles(allowed, GetParam()); },
                                  [&] { return openFile(path, O_RDONLY | O_NONBLOCK); }),
                  "done");
    close(ends[0]);
    close(ends[1]);
}

TEST_P(FileConfinementTest, tellsWhatStatTells) {
    EXPECT_EQ(attempt([this] {
                  struct stat status {};
                  return stat(folder.path("home/secret").c_str(), &status);
              }),
              "done");
}

// A process that is not confined exchanges the folder once the other one is confined.
TEST_P(FileConfinementTest, doesNotTakeAFolderThatComesInThePlaceOfTheOther) {
    int toOther[2];
    int fromOther[2];
    ASSERT_EQ(pipe2(toOther, O_CLOEXEC), 0);
    ASSERT_EQ(pipe2(fromOther, O_CLOEXEC), 0);
    const pid_t other = fork();
    char byte = 0;
    if (other == 0) {
        close(toOther[1]);
        if (read(toOther[0], &byte, 1) == 1) {
            std::filesystem::rename(folder.path("container"), folder.path("former"));
            std::filesystem::create_directory(folder.path("container"));
            (void)!write(fromOther[1], "x", 1);
        }
        _exit(0);
    }
    const auto exchangeAndTry = [&](const char* name) {
        return attempt([&] {
            if (folder.has("container/notifications.xml") &&
                (write(toOther[1], "x", 1) != 1 || read(fromOther[0], &byte, 1) != 1))
                return -1L;
            return openFile(folder.path(name), O_WRONLY | O_CREAT);
        });
    };
    EXPECT_EQ(exchangeAndTry("container/new"), "EACCES");
    EXPECT_FALSE(folder.has("container/new"));
    for (const int end : {toOther[0], toOther[1], fromOther[0], fromOther[1]})
        close(end);
    EXPECT_EQ(waitpid(other, nullptr, 0), other);
}

TEST_P(FileConfinementTest, leavesOutWhatIsNotThere) {
    EXPECT_EQ(inConfinedChild(
                  [this] {
                      return platform::confineFiles({{folder.path("none"), ""}, {folder.path("none/either")}},
                                                    GetParam());
                  },
                  [] { return 0; }),
              "done");
}

TEST_P(FileConfinementTest, takesSingleFiles) {
    const auto attemptOn = [this](const char* name, int flags) {
        return inConfinedChild(
            [this] {
                return platform::confineFiles(
                    {{folder.path("home/secret")}, {folder.path("readable/font.ttf")}}, GetParam());
            },
            [&] { return openFile(folder.path(name), flags); });
    };
    EXPECT_EQ(attemptOn("home/secret", O_RDONLY), "done");
    EXPECT_EQ(attemptOn("home/secret", O_WRONLY), "EACCES");
    EXPECT_EQ(attemptOn("readable/font.ttf", O_RDWR | O_TRUNC), "done");
    EXPECT_EQ(attemptOn("container/notifications.xml", O_RDONLY), "EACCES");
}

TEST_P(FileConfinementTest, forbidsToTruncateAllElseFromVersion3) {
    const std::string truncated = attempt([this] { return truncate(folder.path("home/secret").c_str(), 0); });
    EXPECT_EQ(truncated, GetParam() >= 3 ? "EACCES" : "done");
    EXPECT_EQ(attemptToOpen("readable/font.ttf", O_RDONLY | O_TRUNC), GetParam() >= 3 ? "EACCES" : "done");
}

TEST_P(FileConfinementTest, forbidsTcpFromVersion4) {
    const Listener listener;
    EXPECT_EQ(inConfinedChild([] { return std::error_code(); }, [&] { return listener.connectTo(); }),
              "done");
    EXPECT_EQ(attempt([&] { return listener.connectTo(); }), GetParam() >= 4 ? "EACCES" : "done");
}

TEST_P(FileConfinementTest, forbidsSignalsToOthersFromVersion6) {
    const pid_t parent = getpid();
    EXPECT_EQ(attempt([parent] { return kill(parent, 0); }), GetParam() >= 6 ? "EPERM" : "done");
    EXPECT_EQ(attempt([] { return kill(getpid(), 0); }), "done");
}

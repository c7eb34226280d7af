#include "FailingCalls.h"
#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using platform::replaceFile;
using support::TemporaryFolder;
using testing::ElementsAre;

namespace files = std::filesystem;

namespace {

struct stat statusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

mode_t modeOf(const std::string& path) {
    return statusOf(path).st_mode & 07777;
}

std::vector<std::string> callsOfOneReplacement(const std::string& path) {
    const FailingCalls calls;
    EXPECT_FALSE(replaceFile(path, "probe"));
    return calls.made();
}

class Umask final {
public:
    explicit Umask(mode_t mask)
        : before_(umask(mask)) {}
    ~Umask() { umask(before_); }
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;

private:
    mode_t before_;
};

} // namespace

TEST(ReplaceFileTest, makesANewFile) {
    const TemporaryFolder folder;
    EXPECT_FALSE(replaceFile(folder.path("file"), std::string_view("a\0b", 3)));
    EXPECT_EQ(folder.read("file"), std::string("a\0b", 3));
    EXPECT_EQ(folder.count(), 1U);
}

TEST(ReplaceFileTest, replacesAFile) {
    const TemporaryFolder folder;
    folder.write("file", "a longer old content");
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_EQ(folder.read("file"), "new");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(ReplaceFileTest, writesAnEmptyFile) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    EXPECT_FALSE(replaceFile(folder.path("file"), ""));
    EXPECT_EQ(folder.read("file"), "");
}

TEST(ReplaceFileTest, aReaderThatHasTheOldFileOpenKeepsIt) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    const auto before = statusOf(folder.path("file")).st_ino;
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_NE(statusOf(folder.path("file")).st_ino, before);
}

TEST(ReplaceFileTest, syncsTheFileThenRenamesThenSyncsTheFolder) {
    const TemporaryFolder folder;
    EXPECT_THAT(callsOfOneReplacement(folder.path("file")),
                ElementsAre("readLink", "open", "statusAt", "openAt", "write", "sync", "close", "rename",
                            "sync", "close"));
    EXPECT_THAT(callsOfOneReplacement(folder.path("file")),
                ElementsAre("readLink", "open", "statusOf", "openAt", "write", "changeOwner", "changeMode",
                            "sync", "close", "rename", "sync", "close", "close"));
}

TEST(ReplaceFileTest, keepsTheModeOfTheReplacedFile) {
    const TemporaryFolder folder;
    const Umask mask(0077);
    folder.write("file", "old");
    for (const mode_t mode : {0600, 0644, 0664, 0666, 0400}) {
        chmod(folder.path("file").c_str(), mode);
        EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
        EXPECT_EQ(modeOf(folder.path("file")), mode);
    }
}

TEST(ReplaceFileTest, aNewFileFollowsTheUmask) {
    const TemporaryFolder folder;
    for (const mode_t mask : {0022, 0002, 0077, 0000}) {
        const Umask inForce(mask);
        files::remove(folder.path("file"));
        EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
        EXPECT_EQ(modeOf(folder.path("file")), 0666 & ~mask);
    }
}

TEST(ReplaceFileTest, aRefusedOwnerIsNoError) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    FailingCalls calls;
    calls.failAll("changeOwner", EPERM);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_EQ(folder.read("file"), "new");
}

TEST(ReplaceFileTest, doesNotReplaceALinkThatAppearsWhenItsPlaceIsFound) {
    const TemporaryFolder folder;
    folder.write("elsewhere", "other");
    class Calls final : public FailingCalls {
    public:
        explicit Calls(std::string path)
            : path_(std::move(path)) {}
        int openHandle(int opened, const char* name) override {
            files::create_symlink("elsewhere", path_);
            return FailingCalls::openHandle(opened, name);
        }

    private:
        std::string path_;
    } calls(folder.path("file"));
    EXPECT_EQ(replaceFile(folder.path("file"), "new"), std::errc::invalid_argument);
    EXPECT_EQ(folder.read("elsewhere"), "other");
}

TEST(ReplaceFileTest, followsALinkToItsFile) {
    const TemporaryFolder folder;
    folder.write("below/file", "old");
    files::create_symlink("below/file", folder.path("link"));
    EXPECT_FALSE(replaceFile(folder.path("link"), "new"));
    EXPECT_TRUE(files::is_symlink(folder.path("link")));
    EXPECT_EQ(folder.read("below/file"), "new");
    EXPECT_EQ(folder.count(), 2U);
    EXPECT_EQ(folder.count("below"), 1U);
}

TEST(ReplaceFileTest, followsAChainOfLinksEachFromItsOwnFolder) {
    const TemporaryFolder folder;
    folder.write("a/b/file", "old");
    files::create_symlink("a/second", folder.path("first"));
    files::create_symlink("b/file", folder.path("a/second"));
    EXPECT_FALSE(replaceFile(folder.path("first"), "new"));
    EXPECT_EQ(folder.read("a/b/file"), "new");
}

TEST(ReplaceFileTest, followsALinkWithAFullPath) {
    const TemporaryFolder folder;
    folder.write("below/file", "old");
    files::create_symlink(folder.path("below/file"), folder.path("link"));
    EXPECT_FALSE(replaceFile(folder.path("link"), "new"));
    EXPECT_EQ(folder.read("below/file"), "new");
}

TEST(ReplaceFileTest, makesTheFileThatALinkLeadsTo) {
    const TemporaryFolder folder;
    files::create_symlink("absent", folder.path("link"));
    EXPECT_FALSE(replaceFile(folder.path("link"), "new"));
    EXPECT_TRUE(files::is_symlink(folder.path("link")));
    EXPECT_EQ(folder.read("absent"), "new");
}

TEST(ReplaceFileTest, aLinkThatLeadsNowhereIsAnError) {
    const TemporaryFolder folder;
    files::create_symlink("absent/file", folder.path("link"));
    EXPECT_EQ(replaceFile(folder.path("link"), "new"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(folder.count(), 1U);
}

TEST(ReplaceFileTest, aLoopOfLinksIsAnError) {
    const TemporaryFolder folder;
    files::create_symlink("b", folder.path("a"));
    files::create_symlink("a", folder.path("b"));
    EXPECT_EQ(replaceFile(folder.path("a"), "new"), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(folder.count(), 2U);
}

TEST(ReplaceFileTest, aNameAsLongAsNamesCanBeIsReplaced) {
    const TemporaryFolder folder;
    const std::string name(255, 'n');
    EXPECT_FALSE(replaceFile(folder.path(name), "new"));
    EXPECT_EQ(folder.read(name), "new");
    EXPECT_EQ(replaceFile(folder.path(name + "n"), "new"), std::errc::filename_too_long);
    EXPECT_EQ(folder.count(), 1U);
}

TEST(ReplaceFileTest, replacesAFileNamedWithoutItsFolder) {
    const TemporaryFolder folder;
    const files::path before = files::current_path();
    files::current_path(folder.path());
    EXPECT_FALSE(replaceFile("file", "new"));
    files::current_path(before);
    EXPECT_EQ(folder.read("file"), "new");
}

TEST(ReplaceFileTest, refusesWhatIsNoFile) {
    const TemporaryFolder folder;
    files::create_directory(folder.path("folder"));
    ASSERT_EQ(mkfifo(folder.path("fifo").c_str(), 0600), 0);
    EXPECT_EQ(replaceFile(folder.path("folder"), "new"), std::errc::is_a_directory);
    EXPECT_EQ(replaceFile(folder.path("folder/"), "new"), std::errc::is_a_directory);
    EXPECT_EQ(replaceFile(folder.path("fifo"), "new"), std::errc::invalid_argument);
    EXPECT_EQ(folder.count(), 2U);
}

TEST(ReplaceFileTest, refusesAPathThatIsNone) {
    EXPECT_EQ(replaceFile("", "new"), std::errc::invalid_argument);
    EXPECT_EQ(replaceFile(std::string("/tmp/a\0b", 8), "new"), std::errc::invalid_argument);
}

TEST(ReplaceFileTest, aMissingFolderIsAnError) {
    const TemporaryFolder folder;
    EXPECT_EQ(replaceFile(folder.path("absent/file"), "new"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(folder.count(), 0U);
}

TEST(ReplaceFileTest, writesInPiecesAndGoesOnAfterSignals) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    const std::string bytes(1000, 'x');
    FailingCalls calls;
    calls.moveAtMost(300);
    for (const std::size_t interrupted : {1, 4, 6, 8}) // open, openAt, and two writes
        calls.failAt(interrupted, EINTR);
    EXPECT_FALSE(replaceFile(folder.path("file"), bytes));
    EXPECT_EQ(folder.read("file"), bytes);
    EXPECT_EQ(folder.count(), 1U);
}

// Lets each step fail with each error of a disk. The new file is in place only after the rename.
TEST(ReplaceFileTest, aFailureOfAnyStepLeavesTheOldFileAndNoDebris) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    const std::vector<std::string> steps = callsOfOneReplacement(folder.path("file"));
    ASSERT_EQ(steps.size(), 13U);
    for (const int error : {EIO, ENOSPC, EDQUOT, EROFS, EACCES})
        for (std::size_t step = 0; step < steps.size(); ++step) {
            SCOPED_TRACE(steps[step] + ", step " + std::to_string(step) + ", error " + std::to_string(error));
            folder.write("file", "old");
            FailingCalls calls;
            calls.failAt(step, error);
            const std::error_code result = replaceFile(folder.path("file"), "new");
            const bool isSoft =
                steps[step] == "changeOwner" || step + 2 >= steps.size(); // the closes of what is only read
            const bool isAfterRename = step >= 10;
            EXPECT_EQ(result.value(), isSoft ? 0 : error);
            EXPECT_EQ(platform::isMade(result), isSoft || isAfterRename);
            EXPECT_EQ(folder.read("file"), isSoft || isAfterRename ? "new" : "old");
            EXPECT_EQ(folder.count(), 1U);
        }
}

TEST(ReplaceFileTest, aFailureOfAnyStepMakesNoNewFile) {
    const TemporaryFolder folder;
    const std::vector<std::string> steps = callsOfOneReplacement(folder.path("file"));
    ASSERT_EQ(steps.size(), 10U);
    for (std::size_t step = 0; step < 8; ++step) {
        SCOPED_TRACE(steps[step]);
        files::remove(folder.path("file"));
        FailingCalls calls;
        calls.failAt(step, ENOSPC);
        EXPECT_EQ(replaceFile(folder.path("file"), "new").value(), ENOSPC);
        EXPECT_EQ(folder.count(), 0U);
    }
}

TEST(ReplaceFileTest, aDiskThatFillsUpOnTheWayLeavesTheOldFile) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    FailingCalls calls;
    calls.moveAtMost(300);
    calls.failAt(6, ENOSPC); // the third write
    EXPECT_EQ(replaceFile(folder.path("file"), std::string(1000, 'x')), std::errc::no_space_on_device);
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(ReplaceFileTest, aWriteOfNothingIsAnError) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    FailingCalls calls;
    calls.moveAtMost(0);
    EXPECT_EQ(replaceFile(folder.path("file"), "new"), std::errc::io_error);
    EXPECT_EQ(folder.read("file"), "old");
}

TEST(ReplaceFileTest, aRealLimitOfTheFileSystemLeavesTheOldFile) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    EXPECT_EXIT(
        {
            signal(SIGXFSZ, SIG_IGN);
            rlimit limit;
            limit.rlim_cur = limit.rlim_max = 61'440;
            setrlimit(RLIMIT_FSIZE, &limit);
            const std::error_code error = replaceFile(folder.path("file"), std::string(200'000, 'x'));
            _exit(error == std::errc::file_too_large ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(ReplaceFileTest, aFileSystemWithoutSyncOfFoldersIsNoError) {
    const TemporaryFolder folder;
    FailingCalls calls;
    calls.failAt(8, EINVAL);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_EQ(folder.read("file"), "new");
}

TEST(ReplaceFileTest, anInterruptedCloseIsNoError) {
    const TemporaryFolder folder;
    FailingCalls calls;
    calls.failAt(6, EINTR);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_EQ(folder.count(), 1U);
}

TEST(ReplaceFileTest, takesAnotherNameWhereItsOwnIsTaken) {
    const TemporaryFolder folder;
    FailingCalls calls;
    calls.failAt(3, EEXIST);
    calls.failAt(4, EEXIST);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_EQ(folder.read("file"), "new");
}

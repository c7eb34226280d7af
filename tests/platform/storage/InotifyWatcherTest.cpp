#include "platform/storage/InotifyWatcher.h"

#include "platform/storage/FileSystemCalls.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>
#include <vector>

using platform::InotifyWatcher;
using testing::Contains;
using testing::Each;
using testing::IsEmpty;
using Change = platform::PathWatcher::Change;
namespace files = std::filesystem;

namespace {

// The calls of the system, except that no watch can be made in some places and that a read may tell of lost
// events.
class WatchCalls final : public platform::FileSystemCalls {
public:
    WatchCalls() { setCurrent(this); }
    ~WatchCalls() override { setCurrent(nullptr); }

    int makeWatchQueue() override {
        return queueError ? (errno = queueError, -1) : FileSystemCalls::makeWatchQueue();
    }
    int addWatch(int queue, const char* path, std::uint32_t mask) override {
        if (refused.contains(path))
            return errno = EACCES, -1;
        return added.insert(path), FileSystemCalls::addWatch(queue, path, mask);
    }
    ssize_t read(int file, void* bytes, std::size_t count) override {
        if (!std::exchange(overflows, false))
            return FileSystemCalls::read(file, bytes, count);
        inotify_event lost{};
        lost.wd = -1;
        lost.mask = IN_Q_OVERFLOW;
        std::memcpy(bytes, &lost, sizeof lost);
        return sizeof lost;
    }

    int queueError = 0;
    bool overflows = false;
    std::set<std::string> refused;
    std::set<std::string> added;
};

class InotifyWatcherTest : public testing::Test {
protected:
    InotifyWatcherTest() {
        watcher.setChanged([this](Change change) { told.push_back(change); });
    }

    void watchFile(const std::string& name) { watcher.watch({{folder.path(name)}, {}}); }
    void watchFolder(const std::string& name) { watcher.watch({{}, {folder.path(name)}}); }

    // What is told of the changes since the last look.
    std::vector<Change> look() {
        told.clear();
        watcher.readEvents();
        return told;
    }

    // The file of before is replaced by another one, as a careful writer does it.
    void replace(const std::string& name) {
        files::rename(folder.write(name + ".new", "another"), folder.path(name));
    }

    QCoreApplication* application = makeApplication();
    support::TemporaryFolder folder;
    WatchCalls calls;
    InotifyWatcher watcher;
    std::vector<Change> told;

private:
    static QCoreApplication* makeApplication() {
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        static QCoreApplication one(count, arguments);
        return &one;
    }
};

MATCHER(SaysPath, "") {
    return testing::ExplainMatchResult(testing::AllOf(testing::Not(IsEmpty()), Each(Change::Path)), arg,
                                       result_listener);
}

} // namespace

TEST_F(InotifyWatcherTest, tellsOfAFileThatIsReplaced) {
    folder.write("file", "old");
    watchFile("file");
    EXPECT_THAT(look(), IsEmpty());
    replace("file");
    EXPECT_THAT(look(), SaysPath());
    EXPECT_THAT(look(), IsEmpty());
}

TEST_F(InotifyWatcherTest, tellsOfEachReplacementWithoutFollowingThePathAnew) {
    watchFile("file");
    for (int i = 0; i < 3; ++i) {
        replace("file");
        EXPECT_THAT(look(), SaysPath());
    }
}

TEST_F(InotifyWatcherTest, tellsOfAFileThatIsWrittenInPlaceOnceItIsClosed) {
    folder.write("file", "old");
    watchFile("file");
    const int file = open(folder.path("file").c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(write(file, "half", 4), 4);
    EXPECT_THAT(look(), IsEmpty());
    close(file);
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, tellsOfAFileThatIsRemovedOrMadeOrMayBeReadNow) {
    folder.write("file", "old");
    watchFile("file");
    files::permissions(folder.path("file"), files::perms::none);
    EXPECT_THAT(look(), SaysPath());
    files::remove(folder.path("file"));
    EXPECT_THAT(look(), SaysPath());
    folder.write("file", "new");
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, saysNothingOfOtherFiles) {
    folder.write("below/file", "old");
    watchFile("below/file");
    folder.write("below/.new-1", "another");
    folder.write("file", "another");
    files::remove(folder.path("below/.new-1"));
    EXPECT_THAT(look(), IsEmpty());
}

TEST_F(InotifyWatcherTest, tellsOfEachEntryOfAFolder) {
    folder.write("icons/a.png", "old");
    watchFolder("icons");
    folder.write("icons/b.png", "new");
    EXPECT_THAT(look(), Contains(Change::Entry));
    replace("icons/a.png");
    EXPECT_THAT(look(), Contains(Change::Entry));
    files::remove(folder.path("icons/b.png"));
    EXPECT_THAT(look(), Contains(Change::Entry));
}

TEST_F(InotifyWatcherTest, saysNothingOfAFolderBesideTheWatchedOne) {
    folder.write("account/icons/a.png", "old");
    watchFolder("account/icons");
    folder.write("account/actions.xml", "new");
    folder.write("account/pictures/a.png", "new");
    EXPECT_THAT(look(), IsEmpty());
}

TEST_F(InotifyWatcherTest, tellsOfAFolderThatAppearsLater) {
    watchFile("one/two/file");
    folder.write("one/two/file", "new"); // all of it between two looks
    EXPECT_THAT(look(), SaysPath());
    watchFile("one/two/file");
    replace("one/two/file");
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, followsAPathThatGrowsStepByStep) {
    for (const char* name : {"one", "one/two", "one/two/icons"}) {
        watchFolder("one/two/icons");
        files::create_directory(folder.path(name));
        EXPECT_THAT(look(), SaysPath()) << name;
    }
    watchFolder("one/two/icons");
    folder.write("one/two/icons/a.png", "new");
    EXPECT_THAT(look(), Contains(Change::Entry));
}

TEST_F(InotifyWatcherTest, tellsOfAFolderThatMovesAwayOrGoes) {
    for (const char* gone : {"one", "one/two"}) {
        folder.write("one/two/file", "old");
        watchFile("one/two/file");
        files::rename(folder.path(gone), folder.path("elsewhere"));
        EXPECT_THAT(look(), SaysPath()) << gone;
        files::remove_all(folder.path("elsewhere"));
        look();
    }
    folder.write("one/icons/a.png", "old");
    watchFolder("one/icons");
    files::remove_all(folder.path("one"));
    EXPECT_THAT(look(), Contains(Change::Path));
}

TEST_F(InotifyWatcherTest, tellsOfAFolderThatTakesThePlaceOfAnother) {
    folder.write("icons/a.png", "old");
    folder.write("icons.new/a.png", "new");
    watchFolder("icons");
    files::rename(folder.path("icons"), folder.path("icons.old"));
    files::rename(folder.path("icons.new"), folder.path("icons"));
    EXPECT_THAT(look(), Contains(Change::Path));
    watchFolder("icons");
    folder.write("icons/b.png", "new");
    EXPECT_THAT(look(), Contains(Change::Entry));
}

TEST_F(InotifyWatcherTest, tellsOfALinkThatIsReplaced) {
    folder.write("zones/a", "a");
    folder.write("zones/b", "b");
    files::create_symlink("zones/a", folder.path("link"));
    watchFile("link");
    files::create_symlink("zones/b", folder.path("link.new"));
    EXPECT_THAT(look(), IsEmpty());
    files::rename(folder.path("link.new"), folder.path("link"));
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, tellsOfTheFileThatALinkNames) {
    folder.write("zones/a", "a");
    files::create_symlink(folder.path("zones"), folder.path("etc"));
    files::create_symlink("./etc/../zones/a", folder.path("link"));
    watchFile("link");
    replace("zones/a");
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, tellsOfALinkOnTheWay) {
    folder.write("a/file", "a");
    folder.write("b/file", "b");
    files::create_directory_symlink("a", folder.path("way"));
    watchFile("way/file");
    files::remove(folder.path("way"));
    files::create_directory_symlink("b", folder.path("way"));
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, endsAtALoopOfLinks) {
    files::create_symlink("b", folder.path("a"));
    files::create_symlink("a", folder.path("b"));
    watchFile("a/file");
    files::remove(folder.path("a"));
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, tellsOfAFolderWhereAFileWas) {
    folder.write("way", "a file");
    watchFile("way/file");
    files::remove(folder.path("way"));
    folder.write("way/file", "new");
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, watchesSeveralPathsOfOneFolder) {
    folder.write("a", "old");
    folder.write("b", "old");
    folder.write("icons/c.png", "old");
    watcher.watch({{folder.path("a"), folder.path("b")}, {folder.path("icons"), folder.path("others")}});
    for (const char* name : {"a", "b"}) {
        replace(name);
        EXPECT_THAT(look(), SaysPath()) << name;
    }
    replace("icons/c.png");
    EXPECT_THAT(look(), Contains(Change::Entry));
    files::create_directory(folder.path("others"));
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, leavesThePathsOfBefore) {
    folder.write("a/file", "old");
    folder.write("b/file", "old");
    watchFile("a/file");
    watchFile("b/file");
    EXPECT_THAT(look(), IsEmpty());
    replace("a/file");
    EXPECT_THAT(look(), IsEmpty());
    replace("b/file");
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, followsAPathFromTheCurrentFolder) {
    folder.write("below/file", "old");
    const files::path before = files::current_path();
    files::current_path(folder.path());
    watcher.watch({{"below/file"}, {}});
    files::current_path(before);
    replace("below/file");
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, watchesNothingForAPathThatNamesNoFile) {
    folder.write("a", "old");
    watcher.watch({{folder.path(std::string_view("a\0b", 3))}, {}});
    EXPECT_THAT(calls.added, IsEmpty());
}

TEST_F(InotifyWatcherTest, saysThatNobodyKnowsWhenEventsAreLost) {
    watchFile("file");
    calls.overflows = true;
    EXPECT_THAT(look(), testing::ElementsAre(Change::Entry));
}

// As if its mode forbade it, which does not hold for a superuser.
TEST_F(InotifyWatcherTest, tellsWhenAFolderThatCouldNotBeReadMayBeRead) {
    folder.write("closed/file", "old");
    calls.refused.insert(folder.path("closed"));
    watchFile("closed/file");
    EXPECT_THAT(look(), IsEmpty());
    calls.refused.clear();
    files::permissions(folder.path("closed"), files::perms::owner_all);
    EXPECT_THAT(look(), SaysPath());
    watchFile("closed/file");
    replace("closed/file");
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, goesOnBelowAFolderThatCannotBeRead) {
    folder.write("closed/open/file", "old");
    calls.refused.insert(folder.path("closed"));
    watchFile("closed/open/file");
    replace("closed/open/file");
    EXPECT_THAT(look(), SaysPath());
}

TEST_F(InotifyWatcherTest, saysNothingWithoutInotify) {
    calls.queueError = EMFILE;
    InotifyWatcher without;
    without.setChanged([](Change) { ADD_FAILURE() << "told"; });
    folder.write("file", "old");
    without.watch({{folder.path("file")}, {folder.path()}});
    replace("file");
    without.readEvents();
    EXPECT_THAT(calls.added, IsEmpty());
}

TEST_F(InotifyWatcherTest, tellsFromTheEventLoop) {
    folder.write("file", "old");
    watchFile("file");
    replace("file");
    told.clear();
    while (told.empty())
        application->processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_THAT(told, SaysPath());
}

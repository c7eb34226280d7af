// What every command that writes says of its writes: the same of each.
#include "ctl/CtlTest.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/FolderLock.h"
#include "platform/system/Workspace.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

struct CommandRow {
    const char* name;
    std::vector<std::string> words;
};

class WritesTable : public CtlTest, public testing::WithParamInterface<CommandRow> {
protected:
    WritesTable() {
        writeFeed({plist::Value(recordOf("plan", 20))});
        setSettings({});
        write("-/actions.xml", arrayFile("\t<string>older</string>\n"));
        platform::Workspace::setOpener([](const QString&) { return true; });
    }
    ~WritesTable() override {
        platform::Workspace::setOpener({});
        platform::FolderLock::setPolicy(platform::FolderLock::optional);
    }

    // The bytes of all files in the container.
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(container))
            if (entry.is_regular_file())
                all.push_back(read(std::filesystem::relative(entry.path(), container)).value_or(""));
        return all;
    }
    int runRow() { return run(GetParam().words, "[]"); }
};

// Lets the syncs of folders fail.
class UnsyncedFolders final : public platform::FileSystemCalls {
public:
    UnsyncedFolders() { setCurrent(this); }
    ~UnsyncedFolders() override { setCurrent(nullptr); }
    int sync(int file) override {
        struct stat status {};
        const bool isFolder = fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
        return isFolder ? (errno = EIO, -1) : FileSystemCalls::sync(file);
    }
};

TEST_P(WritesTable, isDoneWhereTheFolderCannotBeSyncedAndSaysSo) {
    const std::vector<std::string> before = files();
    const UnsyncedFolders calls;
    EXPECT_EQ(runRow(), 0) << err;
    EXPECT_NE(err.find(": written, but perhaps not safe yet: Input/output error\n"), std::string::npos)
        << err;
    EXPECT_NE(files(), before);
}

TEST_P(WritesTable, changesNothingWhileAnotherProgramHoldsTheLock) {
    const platform::FolderLock others(container);
    const std::vector<std::string> before = files();
    const Unhurried calls;
    EXPECT_EQ(runRow(), 1);
    EXPECT_NE(err.find("another program has kept the container locked for too long\n"), std::string::npos)
        << err;
    EXPECT_EQ(files(), before);
}

TEST_P(WritesTable, isDoneWithoutTheLockWhereTheFileSystemHasNone) {
    class WithoutLocks final : public platform::FileSystemCalls {
    public:
        WithoutLocks() { setCurrent(this); }
        ~WithoutLocks() override { setCurrent(nullptr); }
        int lock(int /*file*/, int /*operation*/) override { return errno = ENOLCK, -1; }
    };
    const platform::FolderLock others(container);
    const std::vector<std::string> before = files();
    const WithoutLocks calls;
    EXPECT_EQ(runRow(), 0) << err;
    EXPECT_NE(files(), before);
}

INSTANTIATE_TEST_SUITE_P(Commands, WritesTable,
                         testing::Values(CommandRow{"Act", {"act", "plan", "20", "paid"}},
                                         CommandRow{"Info", {"act", "plan", "20", "info"}},
                                         CommandRow{"Consume", {"consume"}},
                                         CommandRow{"Publish", {"publish", "-"}},
                                         CommandRow{"SettingsSet", {"settings", "set", "account_pk", "a"}}),
                         [](const auto& row) { return row.param.name; });

} // namespace
} // namespace ctl

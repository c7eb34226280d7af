// Who may do what with a file stays when it is replaced, and is never more.
#include "FailingCalls.h"
#include "platform/storage/Files.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

using platform::replaceFile;
using support::TemporaryFolder;

constexpr const char* accessList = "system.posix_acl_access";

mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

// An access-control list as the kernel keeps it (version 2): owner, one named user, group, mask, others.
std::string listWith(std::uint16_t namedUser, std::uint16_t mask) {
    const auto entry = [](std::uint16_t tag, std::uint16_t rights, std::uint32_t id) {
        std::string bytes;
        for (const std::uint32_t part : {std::uint32_t(tag | rights << 16), id})
            for (int shift = 0; shift < 32; shift += 8)
                bytes += static_cast<char>(part >> shift);
        return bytes;
    };
    constexpr std::uint32_t nobody = 0xFFFFFFFF;
    using namespace std::string_literals;
    return "\2\0\0\0"s + entry(0x01, 6, nobody) + entry(0x02, namedUser, 65534) + entry(0x04, 0, nobody) +
           entry(0x10, mask, nobody) + entry(0x20, 4, nobody);
}

std::optional<std::string> attributeOf(const std::string& path, const char* name) {
    char bytes[256];
    const ssize_t count = getxattr(path.c_str(), name, bytes, sizeof bytes);
    return count < 0 ? std::nullopt : std::optional(std::string(bytes, static_cast<std::size_t>(count)));
}

void setAttribute(const std::string& path, const char* name, const std::string& value) {
    ASSERT_EQ(setxattr(path.c_str(), name, value.data(), value.size(), 0), 0) << name << ": " << errno;
}

// Whether the file system has attributes of users: a memory file system may have lists alone.
bool setNote(const std::string& path, const std::string& value) {
    if (setxattr(path.c_str(), "user.note", value.data(), value.size(), 0) == 0)
        return true;
    EXPECT_EQ(errno, EOPNOTSUPP);
    return false;
}

class FileAccessTest : public testing::Test {
protected:
    FileAccessTest() { folder.write("file", "old"); }

    const TemporaryFolder folder;
    const std::string file = folder.path("file");
};

TEST_F(FileAccessTest, theAccessControlListAndTheOtherAttributesStay) {
    const std::string list = listWith(6, 6);
    setAttribute(file, accessList, list);
    const bool hasNotes = setNote(file, "kept");
    const mode_t mode = modeOf(file);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(folder.read("file"), "new");
    EXPECT_EQ(attributeOf(file, accessList), list);
    EXPECT_EQ(attributeOf(file, "user.note"), hasNotes ? std::optional<std::string>("kept") : std::nullopt);
    EXPECT_EQ(modeOf(file), mode);
}

TEST_F(FileAccessTest, onlyTheOwnerKeepsAccessWhereTheListIsRefused) {
    setAttribute(file, accessList, listWith(0, 6));
    FailingCalls calls;
    calls.failAll("setAttribute", EPERM);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(modeOf(file), 0600U) << "the named user may not read it as one of the others";
}

TEST_F(FileAccessTest, onlyTheOwnerKeepsAccessWhereTheAttributesCannotBeRead) {
    chmod(file.c_str(), 0664);
    FailingCalls calls;
    calls.failAll("attributeNames", EIO);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(FileAccessTest, theModeStaysWhereTheFileSystemHasNoAttributes) {
    chmod(file.c_str(), 0664);
    FailingCalls calls;
    calls.failAll("attributeNames", EOPNOTSUPP);
    calls.failAll("removeAttribute", EOPNOTSUPP);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(modeOf(file), 0664U);
}

TEST_F(FileAccessTest, aListThatTheFolderGivesNewFilesIsNotAddedToAnOldOne) {
    chmod(file.c_str(), 0660);
    setAttribute(folder.path(), "system.posix_acl_default", listWith(6, 6));
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(attributeOf(file, accessList), std::nullopt);
    EXPECT_EQ(modeOf(file), 0660U);
}

TEST_F(FileAccessTest, aListThatTheFolderGivesAndThatCannotBeRemovedGivesNothing) {
    chmod(file.c_str(), 0664);
    setAttribute(folder.path(), "system.posix_acl_default", listWith(6, 6));
    FailingCalls calls;
    calls.failAll("removeAttribute", EPERM);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(FileAccessTest, attributesThatSayNothingAboutAccessMayBeLost) {
    chmod(file.c_str(), 0644);
    setNote(file, "lost");
    FailingCalls calls;
    calls.failAll("setAttribute", ENOSPC);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(modeOf(file), 0644U);
}

TEST_F(FileAccessTest, stayAsTheyAreWhereAnotherProgramTakesTheFileAwayMeanwhile) {
    class Meanwhile final : public FailingCalls {
    public:
        explicit Meanwhile(std::string file)
            : file_(std::move(file)) {}
        int changeOwner(int opened, uid_t owner, gid_t group) override {
            std::filesystem::rename(file_, file_ + ".taken");
            return FailingCalls::changeOwner(opened, owner, group);
        }

    private:
        std::string file_;
    };
    const std::string list = listWith(6, 6);
    setAttribute(file, accessList, list);
    chmod(file.c_str(), 0664);
    Meanwhile calls(file);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(attributeOf(file, accessList), list);
    EXPECT_EQ(modeOf(file), 0664U);
}

// --- owner and group

struct RefusedRow {
    const char* name;
    bool isOwnerRefused;
    mode_t before;
    mode_t after;
};

class RefusedTable : public FileAccessTest, public testing::WithParamInterface<RefusedRow> {};

// Refuses both, or the group alone.
class RefusingCalls final : public platform::FileSystemCalls {
public:
    explicit RefusingCalls(bool isOwnerRefused)
        : isOwnerRefused_(isOwnerRefused) {
        setCurrent(this);
    }
    ~RefusingCalls() override { setCurrent(nullptr); }
    int changeOwner(int file, uid_t owner, gid_t group) override {
        isNewFile_ = true;
        const bool isOwner = owner != static_cast<uid_t>(-1);
        if (isOwnerRefused_ ? isOwner : group != static_cast<gid_t>(-1))
            return errno = EPERM, -1;
        return FileSystemCalls::changeOwner(file, owner, group);
    }
    int statusOf(int file, struct stat* result) override {
        const int answer = FileSystemCalls::statusOf(file, result);
        if (isOwnerRefused_ && isNewFile_)
            ++result->st_uid; // the new file's owner is another user
        return answer;
    }

private:
    bool isOwnerRefused_;
    bool isNewFile_ = false;
};

TEST_P(RefusedTable, neverWidensAccess) {
    chmod(file.c_str(), GetParam().before);
    const RefusingCalls calls(GetParam().isOwnerRefused);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(modeOf(file), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(Modes, RefusedTable,
                         testing::Values(RefusedRow{"groupHasNoBits", false, 0664, 0604},
                                         RefusedRow{"groupThatHadNoneDoesNotReadAsOthers", false, 0604, 0600},
                                         RefusedRow{"setGroupGoes", false, 02755, 0705},
                                         RefusedRow{"ownerIsNotHeldByMoreThanHisOwnBits", true, 0477, 0444},
                                         RefusedRow{"ownerOfAnOrdinaryFile", true, 0664, 0664},
                                         RefusedRow{"setUserGoes", true, 04755, 0755}),
                         [](const auto& row) { return row.param.name; });

TEST_F(FileAccessTest, aRefusedGroupWithAListLeavesTheOwnerAloneFromTheStart) {
    setAttribute(file, accessList, listWith(6, 6));
    class Calls final : public platform::FileSystemCalls {
    public:
        Calls() { setCurrent(this); }
        ~Calls() override { setCurrent(nullptr); }
        int changeOwner(int, uid_t, gid_t) override { return errno = EPERM, -1; }
        int setAttribute(int, const char* name, const void*, std::size_t) override {
            ADD_FAILURE() << name << " takes effect at once";
            return -1;
        }
    } calls;
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(modeOf(file), 0600U)
        << "a member of the group had nothing and may not read as one of the others";
}

} // namespace

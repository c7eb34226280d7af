#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"

#include "FailingCalls.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

using platform::fileExists;
using platform::isFolder;
using platform::makeFolders;
using platform::pathByAppending;
using platform::readFile;
using support::TemporaryFolder;

namespace files = std::filesystem;

namespace {

std::error_code errorOfReading(const std::string& path) {
    std::error_code error;
    EXPECT_EQ(readFile(path, &error), std::nullopt);
    return error;
}

std::string manyBytes(std::size_t count) {
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

// Changes the length of the file before the first read and after its length was queried.
class ChangingFile final : public FailingCalls {
public:
    ChangingFile(std::string path, std::string bytes)
        : path_(std::move(path))
        , bytes_(std::move(bytes)) {}
    ssize_t read(int file, void* bytes, std::size_t count) override {
        if (!path_.empty())
            std::ofstream(std::exchange(path_, {}), std::ios::binary) << bytes_;
        return FailingCalls::read(file, bytes, count);
    }

private:
    std::string path_;
    std::string bytes_;
};

struct Joined {
    const char* name;
    const char* folder;
    const char* component;
    const char* path;
};

class PathByAppendingTest : public testing::TestWithParam<Joined> {};

} // namespace

TEST(ReadFileTest, givesTheBytesAsTheyStand) {
    const TemporaryFolder folder;
    const std::string bytes("a\0\r\n\xff", 5);
    std::error_code error = std::make_error_code(std::errc::io_error);
    EXPECT_EQ(readFile(folder.write("file", bytes), &error), bytes);
    EXPECT_FALSE(error);
}

TEST(ReadFileTest, readsFilesOfEveryLengthAroundAPiece) {
    const TemporaryFolder folder;
    for (const std::size_t count : {0, 1, 15, 16, 131071, 131072, 131073, 1000003}) {
        const std::string bytes = manyBytes(count);
        EXPECT_TRUE(readFile(folder.write("file", bytes)) == bytes) << count;
    }
}

TEST(ReadFileTest, readsWhatTheSystemGivesInPieces) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", manyBytes(1000));
    FailingCalls calls;
    calls.moveAtMost(7);
    EXPECT_EQ(readFile(path), manyBytes(1000));
}

TEST(ReadFileTest, readsAFileWhoseLengthTheSystemDoesNotKnow) {
    EXPECT_NE(readFile("/proc/self/status").value_or("").find("Name:"), std::string::npos);
}

TEST(ReadFileTest, readsAFileThatGrows) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", "short");
    const ChangingFile calls(path, manyBytes(300'000));
    EXPECT_TRUE(readFile(path) == manyBytes(300'000));
}

TEST(ReadFileTest, readsAFileThatShrinks) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", manyBytes(300'000));
    const ChangingFile calls(path, "short");
    EXPECT_EQ(readFile(path), "short");
}

TEST(ReadFileTest, goesOnAfterASignal) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", "bytes");
    FailingCalls calls; // open, statusOf, read, read, close
    calls.failAt(0, EINTR);
    calls.failAt(1, EINTR);
    calls.failAt(4, EINTR);
    EXPECT_EQ(readFile(path), "bytes");
    EXPECT_EQ(calls.made().size(), 8U);
}

TEST(ReadFileTest, failsWhereAStepFails) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", "bytes");
    for (const std::size_t step : {0, 1, 2, 3}) {
        FailingCalls calls;
        calls.failAt(step, EIO);
        EXPECT_EQ(errorOfReading(path), std::errc::io_error) << step;
    }
}

TEST(ReadFileTest, anAbsentFileIsNone) {
    const TemporaryFolder folder;
    EXPECT_EQ(errorOfReading(folder.path("absent")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(errorOfReading(""), std::errc::no_such_file_or_directory);
}

TEST(ReadFileTest, aForbiddenFileIsNone) {
    const TemporaryFolder folder;
    FailingCalls calls;
    calls.failAll("open", EACCES);
    EXPECT_EQ(errorOfReading(folder.write("file", "bytes")), std::errc::permission_denied);
}

TEST(ReadFileTest, aFolderIsNone) {
    const TemporaryFolder folder;
    EXPECT_EQ(errorOfReading(folder.path()), std::errc::is_a_directory);
}

TEST(ReadFileTest, aFifoIsNoneAndDoesNotHang) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("fifo").c_str(), 0600), 0);
    EXPECT_EQ(errorOfReading(folder.path("fifo")), std::errc::invalid_argument);
}

TEST(ReadFileTest, aDeviceIsNone) {
    EXPECT_EQ(errorOfReading("/dev/zero"), std::errc::invalid_argument);
}

TEST(ReadFileTest, aPathWithANulIsNone) {
    const TemporaryFolder folder;
    folder.write("file", "bytes");
    EXPECT_EQ(errorOfReading(folder.path("file") + std::string("\0x", 2)), std::errc::invalid_argument);
}

TEST(ReadFileTest, aLinkIsFollowed) {
    const TemporaryFolder folder;
    folder.write("file", "bytes");
    files::create_symlink("file", folder.path("link"));
    EXPECT_EQ(readFile(folder.path("link")), "bytes");
}

TEST(ReadFileTest, aFileOfAbsurdLengthIsNone) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", "");
    files::resize_file(path, std::uintmax_t{1} << 43); // without a byte on the disk
    EXPECT_EQ(errorOfReading(path), std::errc::file_too_large);
}

TEST(MakeFoldersTest, makesAFolderAndThoseAboveIt) {
    const TemporaryFolder folder;
    EXPECT_FALSE(makeFolders(folder.path("a/b/c")));
    EXPECT_TRUE(files::is_directory(folder.path("a/b/c")));
}

TEST(MakeFoldersTest, slashesMakeNoDifference) {
    const TemporaryFolder folder;
    EXPECT_FALSE(makeFolders(folder.path("a//b///c//")));
    EXPECT_TRUE(files::is_directory(folder.path("a/b/c")));
}

TEST(MakeFoldersTest, anExistingFolderIsNoError) {
    const TemporaryFolder folder;
    EXPECT_FALSE(makeFolders(folder.path()));
    EXPECT_FALSE(makeFolders("/"));
}

TEST(MakeFoldersTest, aFileInTheWayIsAnError) {
    const TemporaryFolder folder;
    folder.write("file", "bytes");
    EXPECT_EQ(makeFolders(folder.path("file")), std::errc::not_a_directory);
    EXPECT_EQ(makeFolders(folder.path("file/below")), std::errc::not_a_directory);
    EXPECT_EQ(folder.read("file"), "bytes");
}

TEST(MakeFoldersTest, aRefusalIsAnError) {
    const TemporaryFolder folder;
    FailingCalls calls;
    calls.failAll("makeFolder", EACCES);
    EXPECT_EQ(makeFolders(folder.path("a/b")), std::errc::permission_denied);
}

TEST(MakeFoldersTest, syncsTheParentOfEachFolderThatItMakes) {
    const TemporaryFolder folder;
    FailingCalls calls;
    EXPECT_FALSE(makeFolders(folder.path("a/b")));
    const std::vector<std::string> expected = {"status", "makeFolder", "status", "makeFolder", "open", "sync",
                                               "close",  "makeFolder", "open",   "sync",       "close"};
    EXPECT_EQ(calls.made(), expected);
}

TEST(MakeFoldersTest, tellsThatAFolderMayBeLostWhereASyncFails) {
    for (const std::size_t sync : {5, 9}) { // of the parent of a, and of that of a/b
        const TemporaryFolder folder;
        FailingCalls calls;
        calls.failAt(sync, EIO);
        const std::error_code error = makeFolders(folder.path("a/b"));
        EXPECT_EQ(error, std::errc::io_error);
        EXPECT_TRUE(platform::isMade(error));
        EXPECT_EQ(error.message(), "written, but perhaps not safe yet: Input/output error");
        EXPECT_TRUE(files::is_directory(folder.path("a/b")));
    }
}

TEST(MakeFoldersTest, aFileSystemWithoutSyncOfFoldersIsNoError) {
    const TemporaryFolder folder;
    FailingCalls calls;
    calls.failAll("sync", EINVAL);
    EXPECT_FALSE(makeFolders(folder.path("a/b")));
}

TEST(MakeFoldersTest, noPathIsAnError) {
    EXPECT_EQ(makeFolders(""), std::errc::invalid_argument);
    EXPECT_EQ(makeFolders(std::string("/tmp\0x", 6)), std::errc::invalid_argument);
}

TEST(FileExistsTest, tellsFilesFoldersAndNothingApart) {
    const TemporaryFolder folder;
    folder.write("file", "bytes");
    files::create_symlink(folder.path(), folder.path("link"));
    files::create_symlink("/nowhere", folder.path("dangling"));
    EXPECT_TRUE(fileExists(folder.path("file")));
    EXPECT_FALSE(isFolder(folder.path("file")));
    EXPECT_TRUE(fileExists(folder.path()));
    EXPECT_TRUE(isFolder(folder.path()));
    EXPECT_TRUE(isFolder(folder.path("link")));
    EXPECT_FALSE(fileExists(folder.path("dangling")));
    EXPECT_FALSE(fileExists(folder.path("absent")));
    EXPECT_FALSE(isFolder(folder.path("absent")));
    EXPECT_FALSE(fileExists(folder.path() + std::string("\0x", 2)));
}

TEST_P(PathByAppendingTest, joinsByOneSlash) {
    EXPECT_EQ(pathByAppending(GetParam().folder, GetParam().component), GetParam().path);
}

INSTANTIATE_TEST_SUITE_P(
    Files, PathByAppendingTest,
    testing::Values(Joined{"plain", "/a", "b", "/a/b"}, Joined{"slashAfterTheFolder", "/a/", "b", "/a/b"},
                    Joined{"absoluteComponent", "/a", "/b", "/a/b"},
                    Joined{"bothSlashes", "/a/", "/b", "/a/b"}, Joined{"manySlashes", "/a//", "//b", "/a/b"},
                    Joined{"emptyComponent", "/a", "", "/a"}, Joined{"emptyAfterASlash", "/a/", "", "/a"},
                    Joined{"slashAsComponent", "/a", "/", "/a"}, Joined{"root", "/", "b", "/b"},
                    Joined{"rootAlone", "/", "", "/"}, Joined{"emptyFolder", "", "b", "b"},
                    Joined{"bothEmpty", "", "", ""}, Joined{"relativeFolder", "a", "b", "a/b"},
                    Joined{"severalComponents", "/a", "b/c", "/a/b/c"},
                    Joined{"dotsStand", "/a", "../b", "/a/../b"},
                    Joined{"slashAtTheEndStands", "/a", "b/", "/a/b/"}, Joined{"hyphen", "/a", "-", "/a/-"}),
    [](const auto& row) { return row.param.name; });

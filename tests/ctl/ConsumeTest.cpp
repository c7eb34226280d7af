#include "ctl/Bomb.h"
#include "ctl/CtlTest.h"
#include "ctl/Program.h"
#include "exchange/SharedFiles.h"
#include "platform/storage/ClaimedFile.h"
#include "platform/storage/FileSystemCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <streambuf>
#include <sys/wait.h>
#include <unistd.h>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

std::string logged(int type, const std::string& plan, const std::string& date, int parameter) {
    return "<dict><key>type</key><integer>" + std::to_string(type) + "</integer><key>pk</key><string>" +
           plan + "</string><key>date</key><real>" + date + "</real><key>param</key><integer>" +
           std::to_string(parameter) + "</integer></dict>";
}

class ConsumeTest : public CtlTest {
protected:
    [[nodiscard]] bool isEmptied() const {
        return exchange::arrayFromFile(path("-/actions.xml")) == plist::Array() &&
               !std::filesystem::exists(path("-/actions.xml.aside"));
    }
};

TEST_F(ConsumeTest, printsTheLogAndEmptiesIt) {
    write("-/actions.xml",
          arrayFile(logged(1, "a", "1773165600", 0) + logged(2, "b\nc", "1773165600.5", 7) +
                    logged(3, "d", "0", 0) + logged(3, "e", "nan", 1) + "<string>odd</string>"));
    EXPECT_EQ(run({"consume"}), 0) << err;
    EXPECT_EQ(out, "2026-03-10 18:00  paid           a\n"
                   "2026-03-10 18:00  later 7        b c\n"
                   "1970-01-01 00:00  delete         d\n"
                   "nan               delete-future  e\n"
                   "\"odd\"\n");
    EXPECT_TRUE(isEmptied());
    EXPECT_EQ(run({"consume"}), 0);
    EXPECT_EQ(out, "");
}

TEST_F(ConsumeTest, printsOneJsonObjectALine) {
    write("-/actions.xml", arrayFile(logged(1, "a\nb", "1773165600.1", 0) + logged(2, "c", "5", -3)));
    EXPECT_EQ(run({"consume", "--json"}), 0) << err;
    EXPECT_EQ(out, "{\"type\": 1, \"pk\": \"a\\u000ab\", \"date\": 1773165600.1, \"param\": 0}\n"
                   "{\"type\": 2, \"pk\": \"c\", \"date\": 5, \"param\": -3}\n");
}

TEST_F(ConsumeTest, takesTheLogOfTheCurrentAccountOnly) {
    setSettings({{"account_pk", plist::Value("mine")}});
    write("mine/actions.xml", arrayFile(logged(1, "mine", "1", 0)));
    write("-/actions.xml", arrayFile(logged(1, "other", "1", 0)));
    const std::string others = log();
    EXPECT_EQ(run({"consume"}), 0);
    EXPECT_EQ(out, "1970-01-01 00:00  paid           mine\n");
    EXPECT_EQ(log(), others);
}

TEST_F(ConsumeTest, printsNothingWithoutALogAndMakesNone) {
    EXPECT_EQ(run({"consume"}), 0);
    EXPECT_EQ(out, "");
    EXPECT_FALSE(std::filesystem::exists(path("-")));
}

TEST_F(ConsumeTest, failsWhereTheFolderOfTheLogCannotBeOpened) {
    class Closed final : public platform::FileSystemCalls {
        int open(const char* path, int flags) override {
            return (flags & O_DIRECTORY) == 0 ? FileSystemCalls::open(path, flags) : (errno = EACCES, -1);
        }
    } calls;
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    const std::string before = log();
    platform::FileSystemCalls::setCurrent(&calls);
    EXPECT_EQ(run({"consume"}), 1);
    platform::FileSystemCalls::setCurrent(nullptr);
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") +
                       ": the log's folder cannot be opened: Permission denied\n");
    EXPECT_EQ(out, "");
    EXPECT_EQ(log(), before);
}

// Lets paths that end like this not be opened.
class ClosedCalls final : public platform::FileSystemCalls {
public:
    explicit ClosedCalls(std::string ending)
        : ending_(std::move(ending)) {
        setCurrent(this);
    }
    ~ClosedCalls() override { setCurrent(nullptr); }
    int open(const char* path, int flags) override {
        return std::string(path).ends_with(ending_) ? (errno = EACCES, -1)
                                                    : FileSystemCalls::open(path, flags);
    }
    ssize_t readLink(const char* path, char* bytes, std::size_t count) override {
        return std::string(path).ends_with(ending_) ? (errno = EACCES, -1)
                                                    : FileSystemCalls::readLink(path, bytes, count);
    }

private:
    std::string ending_;
};

TEST_F(ConsumeTest, failsWhereTheAccountsFolderMayNotBeSearched) {
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    const ClosedCalls calls("/-/actions.xml");
    EXPECT_EQ(run({"consume"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") +
                       ": the log's folder cannot be opened: Permission denied\n");
    EXPECT_EQ(out, "");
}

TEST_F(ConsumeTest, failsWhereTheSettingsThatNameTheAccountCannotBeRead) {
    setSettings({{"account_pk", plist::Value("mine")}});
    write("mine/actions.xml", arrayFile(logged(1, "mine", "1", 0)));
    const ClosedCalls calls(".plist");
    EXPECT_EQ(run({"consume"}), 1);
    EXPECT_NE(err.find(".plist: Permission denied\n"), std::string::npos) << err;
    EXPECT_EQ(out, "");
}

TEST_F(ConsumeTest, failsWhereTheSettingsAreNoDictionary) {
    breakSettings();
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    EXPECT_EQ(run({"consume"}), 1);
    EXPECT_NE(err.find(".plist: its root is no dictionary\n"), std::string::npos) << err;
    EXPECT_EQ(out, "");
}

TEST_F(ConsumeTest, failsWhileAnotherProgramConsumes) {
    write("-/actions.xml.aside", arrayFile(logged(1, "a", "1", 0)));
    platform::ClaimedFile other;
    ASSERT_FALSE(other.find(path("-/actions.xml")));
    ASSERT_FALSE(other.resume());
    const Unhurried calls;
    EXPECT_EQ(run({"consume"}), 1);
    EXPECT_EQ(err,
              "korvel-todayctl: " + path("-/actions.xml.aside") + ": another program is consuming the log\n");
    EXPECT_EQ(out, "");
}

TEST_F(ConsumeTest, saysThatTheEmptiedLogMayNotBeSafe) {
    class Unsynced final : public platform::FileSystemCalls {
    public:
        Unsynced() { setCurrent(this); }
        ~Unsynced() override { setCurrent(nullptr); }
        int unlink(int folder, const char* name) override {
            isLast = isLast || std::string(name).ends_with(".aside");
            return FileSystemCalls::unlink(folder, name);
        }
        int sync(int file) override { return isLast ? (errno = EIO, -1) : FileSystemCalls::sync(file); }
        bool isLast = false;
    };
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    {
        const Unsynced calls;
        EXPECT_EQ(run({"consume"}), 0);
    }
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") +
                       ": written, but perhaps not safe yet: Input/output error\n");
    EXPECT_TRUE(isEmptied());
}

TEST_F(ConsumeTest, leavesALogThatIsNoArray) {
    write("-/actions.xml", "garbage <");
    EXPECT_EQ(run({"consume"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") + ": no array of records can be read\n");
    EXPECT_EQ(log(), "garbage <");
}

TEST_F(ConsumeTest, saysThatThereIsNoContainer) {
    removeContainer();
    EXPECT_EQ(run({"consume"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + container + ": there is no container\n");
}

// --- records that are too large to be printed

TEST_F(ConsumeTest, aRecordThatIsTooLargeIsNamedAndKeptAndDoesNotHoldBackTheRest) {
    for (const char* const kept : {"-/actions.xml.too-large", "-/actions.xml.too-large-2"}) {
        write("-/actions.xml", bombArray());
        EXPECT_EQ(run({"consume", "--json"}), 1);
        EXPECT_EQ(err,
                  "korvel-todayctl: " + path(kept) +
                      ": record 1 is too large to be printed; it is kept here, the others are printed\n");
        EXPECT_EQ(out, "");
        EXPECT_EQ(read(kept), bombArray());
        EXPECT_TRUE(isEmptied());
    }
    write("-/actions.xml", arrayFile(logged(1, "next", "1", 0)));
    EXPECT_EQ(run({"consume"}), 0) << err;
    EXPECT_EQ(out, "1970-01-01 00:00  paid           next\n");
}

TEST_F(ConsumeTest, aClaimWithATooLargeRecordDoesNotHoldBackTheLog) {
    write("-/actions.xml.aside", bombArray());
    write("-/actions.xml", arrayFile(logged(1, "next", "1", 0)));
    EXPECT_EQ(run({"consume"}), 1);
    EXPECT_EQ(out, "1970-01-01 00:00  paid           next\n");
    EXPECT_EQ(read("-/actions.xml.too-large"), bombArray());
    EXPECT_TRUE(isEmptied());
}

// A sink that does something when it is flushed, and may fail then.
class Sink final : public std::streambuf {
public:
    std::function<bool()> onFlush;

protected:
    int overflow(int c) override { return c == traits_type::eof() ? 0 : c; }
    int sync() override { return onFlush() ? 0 : -1; }
};

class ConsumeFlushTest : public ConsumeTest {
protected:
    int consumeInto(Sink& sink) {
        std::istringstream in;
        std::ostream output(&sink);
        std::ostringstream errors;
        Streams streams{in, output, errors};
        return ctl::run({"--containers", scratch, "consume"}, streams);
    }
};

TEST_F(ConsumeFlushTest, keepsTheRecordsWhereItsOutputIsLost) {
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    Sink sink;
    sink.onFlush = [] { return false; };
    EXPECT_EQ(consumeInto(sink), 1);
    EXPECT_EQ(run({"consume"}), 0) << err;
    EXPECT_EQ(out, "1970-01-01 00:00  paid           a\n");
    EXPECT_TRUE(isEmptied());
}

TEST_F(ConsumeFlushTest, removesTheRecordsOnlyAfterItsOutputHasLeft) {
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    const std::string before = log();
    std::string whenFlushed;
    Sink sink;
    sink.onFlush = [&] {
        if (whenFlushed.empty())
            whenFlushed = read("-/actions.xml.aside").value_or("");
        return true;
    };
    EXPECT_EQ(consumeInto(sink), 0);
    EXPECT_EQ(whenFlushed, before);
    EXPECT_TRUE(isEmptied());
}

TEST_F(ConsumeFlushTest, keepsWhatIsLoggedMeanwhile) {
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    const std::string logged2 = arrayFile(logged(1, "b", "2", 0));
    Sink sink;
    bool isFirst = true;
    sink.onFlush = [&] {
        if (isFirst) {
            EXPECT_FALSE(std::filesystem::exists(path("-/actions.xml"))) << "the widget would write it back";
            write("-/actions.xml", logged2);
        }
        isFirst = false;
        return true;
    };
    EXPECT_EQ(consumeInto(sink), 0);
    EXPECT_EQ(log(), logged2);
    EXPECT_FALSE(std::filesystem::exists(path("-/actions.xml.aside")));
}

TEST_F(ConsumeFlushTest, keepsRecordsThatAnotherProcessHasWritten) {
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    const std::string other = arrayFile(logged(1, "b", "2", 0));
    Sink sink;
    sink.onFlush = [&] {
        write("-/actions.xml.aside", other);
        return true;
    };
    EXPECT_EQ(consumeInto(sink), 1);
    EXPECT_EQ(read("-/actions.xml.aside"), other);
}

TEST_F(ConsumeTest, printsFirstWhatAnInterruptedRunHasLeft) {
    write("-/actions.xml.aside", arrayFile(logged(1, "a", "1", 0)));
    write("-/actions.xml", arrayFile(logged(1, "b", "2", 0)));
    EXPECT_EQ(run({"consume"}), 0) << err;
    EXPECT_EQ(out, "1970-01-01 00:00  paid           a\n1970-01-01 00:00  paid           b\n");
    EXPECT_TRUE(isEmptied());
}

TEST_F(ConsumeTest, printsWhatAnInterruptedRunHasLeftAlsoWithoutANewLog) {
    write("-/actions.xml.aside", arrayFile(logged(1, "a", "1", 0)));
    EXPECT_EQ(run({"consume"}), 0) << err;
    EXPECT_EQ(out, "1970-01-01 00:00  paid           a\n");
    EXPECT_TRUE(isEmptied());
}

TEST_F(ConsumeTest, keepsARenamedLogThatCannotBeReadAndTheLogToo) {
    write("-/actions.xml.aside", "garbage <");
    write("-/actions.xml", arrayFile(logged(1, "b", "2", 0)));
    const std::string before = log();
    EXPECT_EQ(run({"consume"}), 1);
    EXPECT_EQ(out, "");
    EXPECT_EQ(read("-/actions.xml.aside"), "garbage <");
    EXPECT_EQ(log(), before);
}

// Ends the process at one of the moments around the calls that change files.
class DyingCalls final : public platform::FileSystemCalls {
public:
    explicit DyingCalls(int moment)
        : left_(moment) {
        setCurrent(this);
    }
    ~DyingCalls() override { setCurrent(nullptr); }

    int rename(int folder, const char* from, const char* to) override {
        return around([&] { return FileSystemCalls::rename(folder, from, to); });
    }
    int renameToFree(int folder, const char* from, const char* to) override {
        return around([&] { return FileSystemCalls::renameToFree(folder, from, to); });
    }
    int unlink(int folder, const char* name) override {
        return around([&] { return FileSystemCalls::unlink(folder, name); });
    }
    int link(int folder, const char* from, const char* to) override {
        return around([&] { return FileSystemCalls::link(folder, from, to); });
    }
    int sync(int file) override {
        return around([&] { return FileSystemCalls::sync(file); });
    }

private:
    template <class Call>
    int around(Call call) {
        pass();
        const int result = call();
        pass();
        return result;
    }
    void pass() {
        if (left_-- == 0)
            _exit(9);
    }

    int left_;
};

TEST_F(ConsumeTest, printsEachRecordAtLeastOnceWhereverItIsInterrupted) {
    const std::string both = "1970-01-01 00:00  paid           a\n1970-01-01 00:00  paid           b\n";
    int moments = 0;
    for (bool isDone = false; !isDone; ++moments) {
        ASSERT_LT(moments, 50);
        write("-/actions.xml", arrayFile(logged(1, "a", "1", 0) + logged(1, "b", "2", 0)));
        write("printed", "");
        const pid_t child = fork();
        if (child == 0) {
            const DyingCalls calls(moments);
            std::ofstream output(path("printed"), std::ios::binary);
            std::istringstream in;
            std::ostringstream errors;
            Streams streams{in, output, errors};
            _exit(ctl::run({"--containers", scratch, "consume"}, streams));
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        isDone = WEXITSTATUS(status) == 0;
        EXPECT_TRUE(isDone || WEXITSTATUS(status) == 9) << WEXITSTATUS(status);
        const std::string first = read("printed").value_or("");
        EXPECT_EQ(run({"consume"}), 0) << err;
        EXPECT_TRUE(first + out == both || (first == both && out == both)) << moments << ": " << first << out;
        EXPECT_TRUE(isEmptied());
    }
    EXPECT_EQ(moments, 13) << "two around each of rename, sync; sync, rename; unlink, sync; and none";
}

} // namespace
} // namespace ctl

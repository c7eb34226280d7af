#include "ctl/CtlTest.h"
#include "ctl/Program.h"

#include <filesystem>
#include <functional>
#include <streambuf>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

std::string logged(int type, const std::string& plan, const std::string& date, int parameter) {
    return "<dict><key>type</key><integer>" + std::to_string(type) + "</integer><key>pk</key><string>" +
           plan + "</string><key>date</key><real>" + date + "</real><key>param</key><integer>" +
           std::to_string(parameter) + "</integer></dict>";
}

class ConsumeTest : public CtlTest {};

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
    EXPECT_EQ(log(), arrayFile(""));
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

TEST_F(ConsumeFlushTest, keepsTheLogWhereItsOutputIsLost) {
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    const std::string before = log();
    Sink sink;
    sink.onFlush = [] { return false; };
    EXPECT_EQ(consumeInto(sink), 1);
    EXPECT_EQ(log(), before);
}

TEST_F(ConsumeFlushTest, emptiesTheLogOnlyAfterItsOutputHasLeft) {
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    const std::string before = log();
    std::string whenFlushed;
    Sink sink;
    sink.onFlush = [&] {
        if (whenFlushed.empty())
            whenFlushed = log();
        return true;
    };
    EXPECT_EQ(consumeInto(sink), 0);
    EXPECT_EQ(whenFlushed, before);
    EXPECT_EQ(log(), arrayFile(""));
}

TEST_F(ConsumeFlushTest, keepsWhatIsLoggedMeanwhile) {
    write("-/actions.xml", arrayFile(logged(1, "a", "1", 0)));
    Sink sink;
    bool isFirst = true;
    sink.onFlush = [&] {
        if (isFirst)
            write("-/actions.xml", arrayFile(logged(1, "a", "1", 0) + "<string>new</string>"));
        isFirst = false;
        return true;
    };
    EXPECT_EQ(consumeInto(sink), 0);
    EXPECT_EQ(log(), arrayFile("\t<string>new</string>\n"));
}

} // namespace
} // namespace ctl
